#pragma once

#include <Platform/Http/Transfers/PrivateSocket.hpp>

#include <sys/socket.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

/// For asking the kernel where it would send a packet: connecting a UDP socket sends none.
class UdpSocket {
public:
    explicit UdpSocket(int family) noexcept : descriptor_{openPrivateSocket(family, SOCK_DGRAM, 0)} {}
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
    int descriptor_;
};

}  // namespace Tarnwick_API::Platform
