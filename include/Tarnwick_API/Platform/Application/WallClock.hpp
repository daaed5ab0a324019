#pragma once

#include <Tarnwick_API/Export.hpp>

#include <chrono>
#include <functional>

namespace Tarnwick_API::Platform {

/// A date and time of day, in UTC.
using WallTime = std::chrono::sys_time<std::chrono::microseconds>;

/// The computer's clock, which a user may set forward and back. For what outlives the process, such as the age of
/// stored answers; pauses are measured by `MainQueue`.
class TARNWICK_API_EXPORT WallClock {
public:
    /// Thread: any.
    [[nodiscard]] static WallTime now();

    /// Replaces the clock, for tests; an empty one goes back to the computer's. It is called on any thread. When it
    /// throws, the computer's counts, and the debug channel tells.
    static void setSource(std::function<WallTime()> source);
};

}  // namespace Tarnwick_API::Platform
