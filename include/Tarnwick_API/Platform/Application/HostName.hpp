#pragma once

#include <Tarnwick_API/Export.hpp>

#include <functional>
#include <optional>
#include <string>

namespace Tarnwick_API::Platform {

/// The name that people know this computer by.
class TARNWICK_API_EXPORT HostName {
public:
    /// The host's look-up, or else the computer's display name (on macOS the one in its sharing settings, on Linux
    /// PRETTY_HOSTNAME of /etc/machine-info), or else its network name unless that says nothing ("localhost"); none
    /// when there is no such name. Thread: any.
    [[nodiscard]] static std::optional<std::string> localized();

    /// Installs a process-wide look-up; an empty one goes back to the system's. One that throws gives none for that
    /// time; the debug channel tells. Thread: any.
    static void setLookup(std::function<std::optional<std::string>()> lookup);
};

}  // namespace Tarnwick_API::Platform
