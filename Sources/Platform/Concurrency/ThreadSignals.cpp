#include <Platform/Concurrency/ThreadSignals.hpp>

#include <csignal>
#include <utility>

#include <pthread.h>

namespace Tarnwick_API::Platform {

namespace {

/// Keeps signals from the calling thread for as long as this lives, and from the threads that it starts meanwhile for
/// good.
class SignalsBlocked {
public:
    SignalsBlocked() noexcept {
        sigset_t all{};
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &former_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

private:
    sigset_t former_{};
};

}  // namespace

std::thread threadWithoutSignals(std::function<void()> body) {
    const SignalsBlocked blocked;
    return std::thread{std::move(body)};
}

}  // namespace Tarnwick_API::Platform
