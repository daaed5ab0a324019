#pragma once

#include <cstdint>
#include <optional>

namespace Tarnwick_API {

/// HTTP status codes that have a name here.
enum class HttpStatus : std::int16_t {
    ok = 200,
    created = 201,
    noContent = 204,
    notModified = 304,
    badRequest = 400,
    unauthorized = 401,
    forbidden = 403,
    notFound = 404,
    requestTimeout = 408,
    tooManyRequests = 429,
    serverError = 500,
};

/// The case with this code; none for any other code.
[[nodiscard]] std::optional<HttpStatus> httpStatus(std::int64_t code) noexcept;

}  // namespace Tarnwick_API
