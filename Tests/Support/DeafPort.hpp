#pragma once

#include <stdexcept>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

/// A port on 127.0.0.1 where nobody is let in: who connects hears nothing.
class DeafPort {
public:
    DeafPort() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const where = reinterpret_cast<sockaddr*>(&address);
        // One connection is all that such a queue takes.
        if (bind(listener_, where, size) != 0 || listen(listener_, 0) != 0 ||
            getsockname(listener_, where, &size) != 0 || connect(first_, where, size) != 0) {
            throw std::runtime_error{"no port on 127.0.0.1 is to be had"};
        }
        number = ntohs(address.sin_port);
    }
    DeafPort(const DeafPort&) = delete;
    DeafPort& operator=(const DeafPort&) = delete;
    ~DeafPort() {
        close(first_);
        close(listener_);
    }

    int number = 0;

private:
    int listener_ = socket(AF_INET, SOCK_STREAM, 0);
    int first_ = socket(AF_INET, SOCK_STREAM, 0);
};
