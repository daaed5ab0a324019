#pragma once

#include <string_view>

namespace Platform {

/// Whether `text` is UTF-8 throughout; the empty text is.
[[nodiscard]] bool isValidUtf8(std::string_view text) noexcept;

}  // namespace Platform
