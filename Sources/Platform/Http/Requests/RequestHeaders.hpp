#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

/// The header fields of one request, or of several that repeat them: checked once, and kept once. As they may carry
/// credentials, their memory is overwritten when the last of these goes.
class RequestHeaders {
public:
    explicit RequestHeaders(HttpHeaders fields);
    RequestHeaders(const RequestHeaders&) = delete;
    RequestHeaders& operator=(const RequestHeaders&) = delete;
    ~RequestHeaders();

    [[nodiscard]] const HttpHeaders& fields() const noexcept { return fields_; }
    /// See `headerFault`.
    [[nodiscard]] const std::optional<std::string>& fault() const noexcept { return fault_; }

    /// As the request's constructor, without a copy of `headers`.
    [[nodiscard]] static HttpRequest request(std::shared_ptr<const RequestHeaders> headers, HttpMethod method,
                                             const Url& url, const Parameters& parameters, ParameterEncoding encoding) {
        return {std::move(headers), method, url, parameters, encoding};
    }

private:
    HttpHeaders fields_;
    std::optional<std::string> fault_;
};

}  // namespace Tarnwick_API::Platform
