#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Http/Requests/QueryEncoding.hpp>
#include <Platform/Http/Requests/RequestHeaders.hpp>
#include <Platform/Json/JsonWriter.hpp>
#include <Platform/Text/AsciiText.hpp>
#include <Platform/Text/Wiping.hpp>

#include <memory>
#include <string_view>
#include <utility>
#include <variant>

namespace Tarnwick_API::Platform {

namespace {

bool takesQuery(HttpMethod method) noexcept {
    return method == HttpMethod::get || method == HttpMethod::head || method == HttpMethod::delete_;
}

}  // namespace

ParameterValue::~ParameterValue() {
    if (auto* const text = std::get_if<std::string>(&storage_)) {
        wipe(*text);
    }
}

HttpRequest::HttpRequest(HttpMethod method, const Url& url, const Parameters& parameters, ParameterEncoding encoding,
                         HttpHeaders headers)
    : HttpRequest{std::make_shared<const RequestHeaders>(std::move(headers)), method, url, parameters, encoding} {
}

HttpRequest::HttpRequest(std::shared_ptr<const RequestHeaders> headers, HttpMethod method, const Url& url,
                         const Parameters& parameters, ParameterEncoding encoding)
    : method_{method}, url_{url}, headers_{std::move(headers)} {
    if (url_.scheme().empty() || url_.host().empty()) {
        encodingError_ = "the URL has no scheme or no host";
    } else {
        encodingError_ = headers_->fault();
    }
    if (encoding == ParameterEncoding::json) {
        body_ = encodeJson(parameters);
        if (!body_) {
            encodingError_ = "a parameter is a number that JSON can't express";
            return;
        }
        if (method == HttpMethod::head) {
            encodingError_ = "a HEAD request can't carry a body";
        }
        addContentType("application/json");
    } else if (takesQuery(method)) {
        if (!parameters.empty()) {
            url_ = url_.appendingQuery(encodeQuery(parameters));
        }
    } else {
        body_ = encodeQuery(parameters);
        addContentType("application/x-www-form-urlencoded; charset=utf-8");
    }
}

/// Headers are shared, so that what was moved from has some.
HttpRequest::HttpRequest(HttpRequest&& other) noexcept
    : method_{other.method_},
      url_{std::move(other.url_)},
      headers_{other.headers_},  // NOLINT(performance-move-constructor-init): as said above
      body_{std::move(other.body_)},
      encodingError_{std::move(other.encodingError_)} {
}

HttpRequest& HttpRequest::operator=(HttpRequest other) noexcept {
    std::swap(method_, other.method_);
    std::swap(url_, other.url_);
    headers_.swap(other.headers_);
    body_.swap(other.body_);
    encodingError_.swap(other.encodingError_);
    return *this;
}

HttpRequest::~HttpRequest() {
    if (body_) {
        wipe(*body_);
    }
}

const HttpHeaders& HttpRequest::headers() const noexcept {
    return headers_->fields();
}

void HttpRequest::addContentType(std::string_view type) {
    if (!hasHeader(headers(), "Content-Type")) {
        auto fields = headers();
        fields.emplace("Content-Type", type);
        headers_ = std::make_shared<const RequestHeaders>(std::move(fields));
    }
}

HttpRequest HttpRequest::withHeader(std::string_view name, std::string_view value) const& {
    return HttpRequest{*this}.withHeader(name, value);
}

HttpRequest HttpRequest::withHeader(std::string_view name, std::string_view value) && {
    auto fields = headers();
    std::erase_if(fields, [name](const auto& header) { return equalsIgnoringAsciiCase(header.first, name); });
    fields.emplace(name, value);
    headers_ = std::make_shared<const RequestHeaders>(std::move(fields));
    if (!encodingError_) {
        encodingError_ = headerFault(name, value);
    }
    return std::move(*this);
}

}  // namespace Tarnwick_API::Platform
