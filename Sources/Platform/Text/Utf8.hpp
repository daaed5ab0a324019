#pragma once

#include <string>
#include <string_view>

namespace Platform {

/// Whether `text` is UTF-8 throughout; the empty text is.
[[nodiscard]] bool isValidUtf8(std::string_view text) noexcept;

/// `text` with each ill-formed UTF-8 sequence replaced by U+FFFD, one per maximal part as Unicode recommends.
[[nodiscard]] std::string mendedUtf8(std::string_view text);

}  // namespace Platform
