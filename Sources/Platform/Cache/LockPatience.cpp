#include <Platform/Cache/LockPatience.hpp>

#include <algorithm>
#include <thread>

namespace Tarnwick_API::Platform {

bool LockPatience::waitOnce(int wait) {
    if (left_ <= Clock::duration::zero()) {
        return false;
    }
    constexpr int longest = 4;
    const std::chrono::milliseconds pause{1 << std::min(wait, longest)};
    const auto begin = Clock::now();
    std::this_thread::sleep_for(std::min<Clock::duration>(pause, left_));
    lastWait_ = Clock::now();
    left_ -= lastWait_ - begin;
    return true;
}

void LockPatience::fileIsFree() {
    if (left_ < whole && Clock::now() - lastWait_ >= renewal) {
        left_ = whole;
    }
}

}  // namespace Tarnwick_API::Platform
