#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The date of a header, in any of HTTP's three formats. None for anything else, numbers such as "0" included.
[[nodiscard]] std::optional<std::chrono::sys_seconds> parseHttpDate(std::string_view text);

}  // namespace Tarnwick_API::Platform
