#include <Platform/Concurrency/DetachedThread.hpp>

#include <Platform/Concurrency/ThreadSignals.hpp>

#include <system_error>
#include <utility>

namespace Tarnwick_API::Platform {

bool startDetachedThread(std::function<void()> body) {
    try {
        threadWithoutSignals(std::move(body)).detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

}  // namespace Tarnwick_API::Platform
