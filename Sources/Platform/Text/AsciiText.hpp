#pragma once

#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// Whether both are the same but for the case of ASCII letters.
[[nodiscard]] bool equalsIgnoringAsciiCase(std::string_view left, std::string_view right) noexcept;

/// `text` with its ASCII letters in lower case.
[[nodiscard]] std::string asciiLowerCased(std::string_view text);

/// `text` with its ASCII letters in upper case.
[[nodiscard]] std::string asciiUpperCased(std::string_view text);

/// `text` without the blanks, tabs and line ends around it.
[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

}  // namespace Tarnwick_API::Platform
