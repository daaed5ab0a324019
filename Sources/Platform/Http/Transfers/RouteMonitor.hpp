#pragma once

namespace Tarnwick_API::Platform {

/// Tells when the system's routes and addresses change. Thread: the I/O thread.
class RouteMonitor {
public:
    /// Where the system gives no such notices, none come.
    RouteMonitor() noexcept;
    RouteMonitor(const RouteMonitor&) = delete;
    RouteMonitor& operator=(const RouteMonitor&) = delete;
    ~RouteMonitor();  // NOLINT(performance-trivially-destructible): where notices are given, a descriptor is closed

    /// Readable when there may be a change; -1 for never.
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

    /// Takes all notices that have come, without waiting. Whether any of them tells of a change.
    [[nodiscard]] bool takeChanges() noexcept;

private:
    int descriptor_ = -1;
};

}  // namespace Tarnwick_API::Platform
