#pragma once

#include <Tarnwick_API/Platform/HttpRequest.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// Header names are compared without regard to ASCII case.
[[nodiscard]] bool isSameHeaderName(std::string_view left, std::string_view right) noexcept;

/// The value of the header `name`, or null.
[[nodiscard]] const std::string* findHeader(const HttpHeaders& headers, std::string_view name) noexcept;

[[nodiscard]] bool hasHeader(const HttpHeaders& headers, std::string_view name) noexcept;

/// `text` without the blanks and the line end around it.
[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

/// What makes `headers` unfit to be sent: a name that is no token (RFC 9110), or a CR, LF or NUL in a value, which
/// would let a value smuggle in a header of its own. The text repeats no value.
[[nodiscard]] std::optional<std::string> headerFault(const HttpHeaders& headers);

}  // namespace Platform
