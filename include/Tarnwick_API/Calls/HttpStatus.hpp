#pragma once

#include <Tarnwick_API/Export.hpp>

#include <concepts>
#include <cstdint>
#include <optional>

namespace Tarnwick_API {

/// HTTP status codes that have a name here.
enum class TARNWICK_API_EXPORT HttpStatus : std::int16_t {
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

/// The code of a case, such as 404.
[[nodiscard]] constexpr std::int64_t rawValue(HttpStatus status) noexcept {
    return static_cast<std::int64_t>(status);
}

/// The case with this code; none for any other code.
template <std::same_as<HttpStatus> Enumeration>
[[nodiscard]] TARNWICK_API_EXPORT std::optional<Enumeration> fromRawValue(std::int64_t code) noexcept;

}  // namespace Tarnwick_API
