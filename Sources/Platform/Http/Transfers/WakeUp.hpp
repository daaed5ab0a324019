#pragma once

namespace Tarnwick_API::Platform {

/// Ends a thread's wait for descriptors. libcurl's own for a multi handle goes by a pair of sockets, which takes the
/// system several times as long.
class WakeUp {
public:
    /// Throws std::system_error when the process may have no more descriptors.
    WakeUp();
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;
    ~WakeUp();

    /// Readable from `call` until `clear`.
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

    /// Thread: any.
    void call() noexcept;

    /// Forgets all calls that have come. Thread: the one that waits.
    void clear() noexcept;

private:
    int descriptor_ = -1;
    /// Where calls are written to.
    int caller_ = -1;
};

}  // namespace Tarnwick_API::Platform
