#include <Platform/Concurrency/QueueThread.hpp>

#include <Platform/Concurrency/FirstThread.hpp>

namespace Tarnwick_API::Platform {

bool QueueThread::isCurrent() const noexcept {
    const auto thread = thread_.load();
    return thread == std::thread::id{} ? isFirstThread() : thread == std::this_thread::get_id();
}

}  // namespace Tarnwick_API::Platform
