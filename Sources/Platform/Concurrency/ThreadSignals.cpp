#include <Platform/Concurrency/ThreadSignals.hpp>

#include <csignal>

#include <pthread.h>

namespace Tarnwick_API::Platform {

void blockSignals() noexcept {
    sigset_t all{};
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

}  // namespace Tarnwick_API::Platform
