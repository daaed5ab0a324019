#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The name to show for a computer with this machine-info file and this network name. Names that are not UTF-8, and
/// network names that every unnamed computer has, count as none.
[[nodiscard]] std::optional<std::string> displayHostName(std::string_view machineInfo, std::string_view networkName);

/// The same for this computer.
[[nodiscard]] std::optional<std::string> systemHostName();

}  // namespace Tarnwick_API::Platform
