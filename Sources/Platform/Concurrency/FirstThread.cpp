#include <Platform/Concurrency/FirstThread.hpp>

#include <unistd.h>

namespace Tarnwick_API::Platform {

bool isFirstThread() noexcept {
    return ::gettid() == ::getpid();
}

}  // namespace Tarnwick_API::Platform
