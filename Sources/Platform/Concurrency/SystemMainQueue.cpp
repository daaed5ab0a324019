#include <Platform/Concurrency/SystemMainQueue.hpp>

#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

namespace Tarnwick_API::Platform {

std::shared_ptr<MainQueue> systemMainQueue() {
    return BuiltInMainQueue::shared();
}

}  // namespace Tarnwick_API::Platform
