#include <Platform/Concurrency/FirstThread.hpp>

#include <pthread.h>

namespace Tarnwick_API::Platform {

bool isFirstThread() noexcept {
    return ::pthread_main_np() != 0;
}

}  // namespace Tarnwick_API::Platform
