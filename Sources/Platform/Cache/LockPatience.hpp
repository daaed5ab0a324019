#pragma once

#include <chrono>

namespace Tarnwick_API::Platform {

/// How long a cache waits for other processes that have its file locked: a tenth of a second in all, whatever it does
/// meanwhile, so that answers that come together don't wait one after the other. Then not at all, until the file is
/// free.
class LockPatience {
public:
    /// Waits a little; false when it is used up. `wait`: how many times that lock has been waited for.
    [[nodiscard]] bool waitOnce(int wait);

    /// To be told when the file has been got. Patience is whole again unless it was needed just now: a process that
    /// locks the file again and again is not waited for again and again.
    void fileIsFree();

private:
    using Clock = std::chrono::steady_clock;

    static constexpr Clock::duration whole = std::chrono::milliseconds{100};
    static constexpr Clock::duration renewal = std::chrono::seconds{1};

    Clock::duration left_ = whole;
    Clock::time_point lastWait_;
};

}  // namespace Tarnwick_API::Platform
