#include <Platform/Concurrency/ThreadSignals.hpp>

#include <csignal>

#include <pthread.h>

namespace Platform {

void blockSignals() noexcept {
    sigset_t all{};
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

}  // namespace Platform
