#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The name to show for a computer that its user calls `displayName`. Empty names, those that are not UTF-8, and
/// network names that every unnamed computer has count as none.
[[nodiscard]] std::optional<std::string> displayHostName(std::optional<std::string> displayName,
                                                         std::string_view networkName);

/// The same for this computer.
[[nodiscard]] std::optional<std::string> systemHostName();

}  // namespace Tarnwick_API::Platform
