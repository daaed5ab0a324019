#include <Platform/Http/Transfers/WakeUp.hpp>

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

WakeUp::WakeUp() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        throw std::system_error{errno, std::generic_category(), "no descriptor to be woken by"};
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    descriptor_ = ends.front();
    caller_ = ends.back();
}

WakeUp::~WakeUp() {
    ::close(descriptor_);
    ::close(caller_);
}

void WakeUp::call() noexcept {
    // A pipe that is full will wake as well.
    static_cast<void>(!::write(caller_, "", 1));
}

void WakeUp::clear() noexcept {
    std::array<char, 64> calls{};
    while (::read(descriptor_, calls.data(), calls.size()) > 0) {
    }
}

}  // namespace Tarnwick_API::Platform
