#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The value of the header `name`, or null. Names are compared without regard to ASCII case.
[[nodiscard]] const std::string* findHeader(const HttpHeaders& headers, std::string_view name) noexcept;

[[nodiscard]] bool hasHeader(const HttpHeaders& headers, std::string_view name) noexcept;

/// What makes a header unfit to be sent: a name that is no token (RFC 9110), or a CR, LF or NUL in its value, which
/// would let a value smuggle in a header of its own. The text repeats no value.
[[nodiscard]] std::optional<std::string> headerFault(std::string_view name, std::string_view value);

/// The same of the first of `headers` that is unfit.
[[nodiscard]] std::optional<std::string> headerFault(const HttpHeaders& headers);

}  // namespace Tarnwick_API::Platform
