#include <Platform/Concurrency/DetachedThread.hpp>

#include <Platform/Concurrency/ThreadSignals.hpp>

#include <system_error>
#include <thread>
#include <utility>

namespace Tarnwick_API::Platform {

bool startDetachedThread(std::function<void()> body) {
    try {
        std::thread{[work = std::move(body)] {
            blockSignals();
            work();
        }}.detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

}  // namespace Tarnwick_API::Platform
