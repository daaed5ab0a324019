#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The date of a header, in any of HTTP's three formats, letters in any case. None for anything else, however well it
/// could be guessed: another zone, numbers such as "0". A year of two digits is the one nearest to `now`.
[[nodiscard]] std::optional<std::chrono::sys_seconds> parseHttpDate(std::string_view text,
                                                                    std::chrono::sys_seconds now);

}  // namespace Tarnwick_API::Platform
