#include <Platform/Concurrency/UnrunMainQueue.hpp>

#include <Platform/Concurrency/ProcessFork.hpp>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace Tarnwick_API::Platform {

namespace {

constinit ForkLosses losses;
constinit std::atomic<bool> isUsed = false;
constinit std::atomic<bool> hasRun = false;

void tell() {
    if (!hasRun && !losses.isLost()) {
        std::fputs(
            "Tarnwick_API: this program ends without having run the main queue, on which answers come: no completion "
            "was called. Call Platform::BuiltInMainQueue::shared()->run(), or install the event loop's queue with "
            "Platform::MainQueue::setMain before the first operation.\n",
            stderr);
    }
}

}  // namespace

void UnrunMainQueue::noteUse() noexcept {
    if (!isUsed.load(std::memory_order_relaxed) && !isUsed.exchange(true)) {
        losses.noteStart();
        // Without room for the handler nothing is told.
        static_cast<void>(std::atexit(&tell));
    }
}

void UnrunMainQueue::noteRun() noexcept {
    hasRun.store(true, std::memory_order_relaxed);
}

}  // namespace Tarnwick_API::Platform
