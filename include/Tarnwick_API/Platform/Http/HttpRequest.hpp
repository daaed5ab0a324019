#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Tarnwick_API::Platform {

/// A request's method.
enum class HttpMethod { options, get, head, post, put, patch, delete_, trace, connect };

/// "GET", "DELETE", ...
[[nodiscard]] TARNWICK_API_EXPORT std::string_view name(HttpMethod method) noexcept;

/// Header fields by name, as they are written.
using HttpHeaders = std::map<std::string, std::string, std::less<>>;

/// A parameter: text, integer, real, flag, a list or a map of these.
/// A text may be a password: its memory is overwritten when the value goes.
/// A list whose only element is a list is `List{ParameterValue{List{...}}}`: compilers disagree on whether
/// `List{List{...}}` is that or a copy of the inner one.
class TARNWICK_API_EXPORT ParameterValue {
public:
    /// A list of parameters.
    using List = std::vector<ParameterValue>;
    /// Parameters by name.
    using Map = std::map<std::string, ParameterValue, std::less<>>;
    /// What a parameter can be.
    using Storage = std::variant<std::string, std::int64_t, double, bool, List, Map>;

    ParameterValue(std::string text) : storage_{std::move(text)} {}
    ParameterValue(std::string_view text) : storage_{std::string{text}} {}
    ParameterValue(const char* text) : storage_{std::string{text}} {}
    ParameterValue(std::int64_t integer) : storage_{integer} {}
    ParameterValue(int integer) : storage_{std::int64_t{integer}} {}
    ParameterValue(double real) : storage_{real} {}
    ParameterValue(bool flag) : storage_{flag} {}
    ParameterValue(List list) : storage_{std::move(list)} {}
    ParameterValue(Map map) : storage_{std::move(map)} {}
    ParameterValue(const ParameterValue&) = default;
    ParameterValue(ParameterValue&&) noexcept = default;
    ParameterValue& operator=(ParameterValue other) noexcept {
        storage_.swap(other.storage_);
        return *this;
    }
    ~ParameterValue();

    [[nodiscard]] const Storage& storage() const noexcept { return storage_; }

    friend bool operator==(const ParameterValue&, const ParameterValue&) = default;

private:
    Storage storage_;
};

/// Parameters by name, in the order in which they are encoded.
using Parameters = ParameterValue::Map;

/// How parameters travel.
enum class ParameterEncoding {
    /// In the query for GET, HEAD and DELETE; for any other method as a form body.
    url,
    /// As a JSON object in the body, whatever the method.
    json,
};

class RequestHeaders;

/// One HTTP request, complete and immutable. As it may carry credentials, the memory of its body is overwritten when it
/// goes, and that of its headers with the last request that shares them, as copies do.
class TARNWICK_API_EXPORT HttpRequest {
public:
    /// Encodes `parameters` into `url` or a body. Keys go in ascending byte order. What can't be encoded (text that
    /// is no UTF-8 is mended; NaN and infinity in JSON are not; a header name that is no token; CR, LF or NUL in a
    /// header; a URL without scheme or host; a body for HEAD) is kept as `encodingError`: a session reports it instead
    /// of sending.
    HttpRequest(HttpMethod method, const Url& url, const Parameters& parameters, ParameterEncoding encoding,
                HttpHeaders headers);
    HttpRequest(const HttpRequest&) = default;
    HttpRequest(HttpRequest&& other) noexcept;
    HttpRequest& operator=(HttpRequest other) noexcept;
    ~HttpRequest();

    [[nodiscard]] HttpMethod method() const noexcept { return method_; }
    [[nodiscard]] const Url& url() const noexcept { return url_; }
    /// The request's own headers; a session adds its default ones, and says "Content-Length" by itself.
    [[nodiscard]] const HttpHeaders& headers() const noexcept;
    [[nodiscard]] const std::optional<Bytes>& body() const noexcept { return body_; }
    [[nodiscard]] const std::optional<std::string>& encodingError() const noexcept { return encodingError_; }

    /// The same request with the header `name` set to `value`, in place of any of that name.
    /// @{
    [[nodiscard]] HttpRequest withHeader(std::string_view name, std::string_view value) const&;
    [[nodiscard]] HttpRequest withHeader(std::string_view name, std::string_view value) &&;
    /// @}

    /// A curl command line that makes the same request, one option a line; headers sorted by name.
    /// It holds everything the request holds, credentials and passwords included.
    [[nodiscard]] std::string curlRendering(const HttpHeaders& sessionHeaders) const;

private:
    friend class RequestHeaders;

    HttpRequest(std::shared_ptr<const RequestHeaders> headers, HttpMethod method, const Url& url,
                const Parameters& parameters, ParameterEncoding encoding);

    void addContentType(std::string_view type);

    HttpMethod method_;
    Url url_;
    /// Never none.
    std::shared_ptr<const RequestHeaders> headers_;
    std::optional<Bytes> body_;
    std::optional<std::string> encodingError_;
};

}  // namespace Tarnwick_API::Platform
