#pragma once

#include <optional>
#include <string>

namespace Tarnwick_API::Platform {

/// The name that the user gave this computer, as the system keeps it; none without one.
[[nodiscard]] std::optional<std::string> systemDisplayName();

}  // namespace Tarnwick_API::Platform
