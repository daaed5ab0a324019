#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Concurrency/UnrunMainQueue.hpp>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedQueue{&ProcessValues::mainQueue};

}  // namespace

std::shared_ptr<MainQueue> MainQueue::main() {
    if (auto queue = installedQueue.get()) {
        return queue;
    }
    UnrunMainQueue::noteUse();
    return BuiltInMainQueue::shared();
}

void MainQueue::setMain(std::shared_ptr<MainQueue> queue) {
    installedQueue.set(std::move(queue));
}

}  // namespace Tarnwick_API::Platform
