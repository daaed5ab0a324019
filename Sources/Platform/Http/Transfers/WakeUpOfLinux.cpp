#include <Platform/Http/Transfers/WakeUp.hpp>

#include <cerrno>
#include <system_error>

#include <sys/eventfd.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

WakeUp::WakeUp() : descriptor_{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)}, caller_{descriptor_} {
    if (descriptor_ < 0) {
        throw std::system_error{errno, std::generic_category(), "no descriptor to be woken by"};
    }
}

WakeUp::~WakeUp() {
    ::close(descriptor_);
}

void WakeUp::call() noexcept {
    static_cast<void>(::eventfd_write(caller_, 1));
}

void WakeUp::clear() noexcept {
    eventfd_t calls = 0;
    static_cast<void>(::eventfd_read(descriptor_, &calls));
}

}  // namespace Tarnwick_API::Platform
