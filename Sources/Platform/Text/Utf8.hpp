#pragma once

#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// Whether `text` is UTF-8 throughout; the empty text is.
[[nodiscard]] bool isValidUtf8(std::string_view text) noexcept;

/// `text` without the byte order mark that it may begin with.
[[nodiscard]] std::string_view withoutByteOrderMark(std::string_view text) noexcept;

/// `text` with each ill-formed UTF-8 sequence replaced by U+FFFD, one per maximal part as Unicode recommends.
[[nodiscard]] std::string replaceInvalidUtf8(std::string_view text);

}  // namespace Tarnwick_API::Platform
