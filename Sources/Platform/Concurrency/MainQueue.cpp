#include <Tarnwick_API/Platform/MainQueue.hpp>

#include <Tarnwick_API/Platform/BuiltInMainQueue.hpp>

#include <Platform/Concurrency/ProcessWide.hpp>

namespace Platform {

namespace {

ProcessWide<MainQueue>& installedQueue() {
    static auto& queue = ProcessWide<MainQueue>::immortal();
    return queue;
}

}  // namespace

std::shared_ptr<MainQueue> MainQueue::main() {
    if (auto queue = installedQueue().get()) {
        return queue;
    }
    return BuiltInMainQueue::shared();
}

void MainQueue::setMain(std::shared_ptr<MainQueue> queue) {
    installedQueue().set(std::move(queue));
}

}  // namespace Platform
