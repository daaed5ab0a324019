#include <Tarnwick_API/Platform/MainQueue.hpp>

#include <Tarnwick_API/Platform/BuiltInMainQueue.hpp>

#include <mutex>

namespace Platform {

namespace {

struct Installed {
    std::mutex mutex;
    std::shared_ptr<MainQueue> queue;
};

// Never destroyed: other threads may still hand over tasks while the process exits.
Installed& installed() {
    static auto& value = *std::make_unique<Installed>().release();
    return value;
}

}  // namespace

std::shared_ptr<MainQueue> MainQueue::main() {
    auto& current = installed();
    const std::lock_guard lock{current.mutex};
    if (current.queue) {
        return current.queue;
    }
    return BuiltInMainQueue::shared();
}

void MainQueue::setMain(std::shared_ptr<MainQueue> queue) {
    auto& current = installed();
    {
        const std::lock_guard lock{current.mutex};
        current.queue.swap(queue);
    }
    // The replaced queue, and the tasks it drops, go outside the lock.
}

}  // namespace Platform
