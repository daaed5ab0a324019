#pragma once

#include <string>

namespace Tarnwick_API::Platform {

/// The operating system as services know it by: "Linux" with the kernel's release, "OS X" with the system's version.
struct RunningSystem {
    std::string name;
    /// Empty when the system doesn't tell.
    std::string release;
};

[[nodiscard]] RunningSystem runningSystem();

}  // namespace Tarnwick_API::Platform
