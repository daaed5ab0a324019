#include <Platform/Http/Transfers/ConnectionSockets.hpp>

#include <Platform/Http/Transfers/PrivateSocket.hpp>

#include <array>
#include <exception>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

bool isAt(curl_socket_t socket, const ConnectionSockets::LocalEnd& end) noexcept {
    sockaddr_storage storage{};
    socklen_t length = sizeof storage;
    auto* const generic = reinterpret_cast<sockaddr*>(&storage);
    if (::getsockname(socket, generic, &length) != 0) {
        return false;
    }
    std::array<char, INET6_ADDRSTRLEN> text{};
    const void* address = nullptr;
    long port = 0;
    if (generic->sa_family == AF_INET) {
        const auto* const v4 = reinterpret_cast<const sockaddr_in*>(&storage);
        address = &v4->sin_addr;
        port = ntohs(v4->sin_port);
    } else if (generic->sa_family == AF_INET6) {
        const auto* const v6 = reinterpret_cast<const sockaddr_in6*>(&storage);
        address = &v6->sin6_addr;
        port = ntohs(v6->sin6_port);
    }
    return address != nullptr && port == end.port &&
           ::inet_ntop(generic->sa_family, address, text.data(), text.size()) != nullptr && end.address == text.data();
}

}  // namespace

void ConnectionSockets::serve(OptionSetter& set) {
    set(CURLOPT_OPENSOCKETFUNCTION, &ConnectionSockets::open);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_CLOSESOCKETFUNCTION, &ConnectionSockets::close);
    set(CURLOPT_CLOSESOCKETDATA, this);
}

void ConnectionSockets::noteOneAtATime(const LocalEnd& end) {
    if (const auto entry = sockets_.find(find(end)); entry != sockets_.end()) {
        entry->second = true;
    }
}

bool ConnectionSockets::isSpoilt(const LocalEnd& end) const {
    const auto entry = sockets_.find(find(end));
    if (entry == sockets_.end() || !entry->second) {
        return false;
    }
    // The end of a connection is readable too.
    pollfd wanted{.fd = entry->first, .events = POLLIN, .revents = 0};
    return ::poll(&wanted, 1, 0) > 0;
}

curl_socket_t ConnectionSockets::open(void* sockets, curlsocktype /*purpose*/, curl_sockaddr* address) noexcept {
    const auto socket = openPrivateSocket(address->family, address->socktype, address->protocol);
    if (socket != CURL_SOCKET_BAD) {
        try {
            static_cast<ConnectionSockets*>(sockets)->sockets_.emplace(socket, false);
        } catch (const std::exception&) {
            ::close(socket);
            return CURL_SOCKET_BAD;
        }
    }
    return socket;
}

int ConnectionSockets::close(void* sockets, curl_socket_t socket) noexcept {
    static_cast<ConnectionSockets*>(sockets)->sockets_.erase(socket);
    return ::close(socket);
}

curl_socket_t ConnectionSockets::find(const LocalEnd& end) const {
    for (const auto& [socket, isOneAtATime] : sockets_) {
        if (isAt(socket, end)) {
            return socket;
        }
    }
    return CURL_SOCKET_BAD;
}

}  // namespace Tarnwick_API::Platform
