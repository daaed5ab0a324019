#pragma once

#include <sys/socket.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

/// For asking the kernel where it would send a packet: connecting a UDP socket sends none.
class UdpSocket {
public:
    explicit UdpSocket(int family) noexcept : descriptor_{newDescriptor(family)} {}
    ~UdpSocket() {
        if (isOpen()) {
            ::close(descriptor_);
        }
    }
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

private:
    static int newDescriptor(int family) noexcept {
#ifdef SOCK_CLOEXEC
        return ::socket(family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
#else
        return ::socket(family, SOCK_DGRAM, 0);
#endif
    }

    int descriptor_;
};

}  // namespace Tarnwick_API::Platform
