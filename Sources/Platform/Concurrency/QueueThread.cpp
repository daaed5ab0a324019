#include <Platform/Concurrency/QueueThread.hpp>

#include <unistd.h>

#ifdef __APPLE__
#include <pthread.h>
#endif

namespace Tarnwick_API::Platform {

namespace {

bool isFirstThread() noexcept {
#ifdef __APPLE__
    return pthread_main_np() != 0;
#else
    return ::gettid() == ::getpid();
#endif
}

}  // namespace

bool QueueThread::isCurrent() const noexcept {
    const auto thread = thread_.load();
    return thread == std::thread::id{} ? isFirstThread() : thread == std::this_thread::get_id();
}

}  // namespace Tarnwick_API::Platform
