#include <Platform/Http/Transfers/ConnectionRoute.hpp>

#include <Platform/Http/Transfers/UdpSocket.hpp>

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include <ifaddrs.h>
#include <netinet/in.h>

namespace Tarnwick_API::Platform {

namespace {

using Interfaces = std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)>;

bool haveSameAddress(const sockaddr& one, const sockaddr& other) noexcept {
    if (one.sa_family != other.sa_family) {
        return false;
    }
    if (one.sa_family == AF_INET) {
        return reinterpret_cast<const sockaddr_in&>(one).sin_addr.s_addr ==
               reinterpret_cast<const sockaddr_in&>(other).sin_addr.s_addr;
    }
    return one.sa_family == AF_INET6 &&
           std::memcmp(&reinterpret_cast<const sockaddr_in6&>(one).sin6_addr,
                       &reinterpret_cast<const sockaddr_in6&>(other).sin6_addr, sizeof(in6_addr)) == 0;
}

/// The address that a new connection to `peer` would have here; none without a route.
std::optional<sockaddr_storage> sourceFor(const sockaddr_storage& peer) noexcept {
    const UdpSocket socket{peer.ss_family};
    const socklen_t size = peer.ss_family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    sockaddr_storage source{};
    socklen_t length = sizeof source;
    if (!socket.isOpen() || ::connect(socket.descriptor(), reinterpret_cast<const sockaddr*>(&peer), size) != 0 ||
        ::getsockname(socket.descriptor(), reinterpret_cast<sockaddr*>(&source), &length) != 0) {
        return std::nullopt;
    }
    return source;
}

}  // namespace

bool leadsElsewhere(curl_socket_t socket, const sockaddr_storage& peer) noexcept {
    sockaddr_storage localStorage{};
    socklen_t length = sizeof localStorage;
    const auto source = sourceFor(peer);
    if (!source || ::getsockname(socket, reinterpret_cast<sockaddr*>(&localStorage), &length) != 0) {
        return false;
    }
    const auto& local = reinterpret_cast<const sockaddr&>(localStorage);
    const auto& wanted = reinterpret_cast<const sockaddr&>(*source);
    if (haveSameAddress(local, wanted)) {
        return false;
    }
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) != 0) {
        return false;
    }
    // An interface may have several addresses: IPv6 has a new one preferred every day, and the old one goes on.
    const Interfaces owner{list, &::freeifaddrs};
    for (const auto* one = list; one != nullptr; one = one->ifa_next) {
        if (one->ifa_addr == nullptr || !haveSameAddress(*one->ifa_addr, local)) {
            continue;
        }
        for (const auto* other = list; other != nullptr; other = other->ifa_next) {
            if (other->ifa_addr != nullptr && haveSameAddress(*other->ifa_addr, wanted) &&
                std::strcmp(one->ifa_name, other->ifa_name) == 0) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace Tarnwick_API::Platform
