#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Concurrency/SystemMainQueue.hpp>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedQueue{&ProcessValues::mainQueue};

}  // namespace

std::shared_ptr<MainQueue> MainQueue::main() {
    if (auto queue = installedQueue.get()) {
        return queue;
    }
    return systemMainQueue();
}

void MainQueue::setMain(std::shared_ptr<MainQueue> queue) {
    installedQueue.set(std::move(queue));
}

}  // namespace Tarnwick_API::Platform
