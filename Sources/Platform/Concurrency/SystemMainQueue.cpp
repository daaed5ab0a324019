#include <Platform/Concurrency/SystemMainQueue.hpp>

#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include <Platform/Concurrency/UnrunMainQueue.hpp>

namespace Tarnwick_API::Platform {

std::shared_ptr<MainQueue> systemMainQueue() {
    UnrunMainQueue::noteUse();
    return BuiltInMainQueue::shared();
}

}  // namespace Tarnwick_API::Platform
