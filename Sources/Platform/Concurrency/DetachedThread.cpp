#include <Platform/Concurrency/DetachedThread.hpp>

#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

namespace Tarnwick_API::Platform {

bool startDetachedThread(std::function<void()> body) {
    try {
        std::thread{[work = std::move(body)] {
            sigset_t all{};
            sigfillset(&all);
            pthread_sigmask(SIG_BLOCK, &all, nullptr);
            work();
        }}.detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

}  // namespace Tarnwick_API::Platform
