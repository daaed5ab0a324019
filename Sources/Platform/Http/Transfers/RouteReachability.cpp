#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/UdpSocket.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace Tarnwick_API::Platform {

namespace {

/// Whether the kernel would know where to send a packet.
template <typename Address>
bool hasRoute(int family, const Address& address) {
    const UdpSocket socket{family};
    // A shortage of descriptors says nothing about the network; the transfer will report it.
    return !socket.isOpen() ||
           ::connect(socket.descriptor(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

constexpr in_port_t anyPort = 443;

bool hasRoute(const in_addr& address) {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(anyPort);
    target.sin_addr = address;
    return hasRoute(AF_INET, target);
}

bool hasRoute(const in6_addr& address) {
    sockaddr_in6 target{};
    target.sin6_family = AF_INET6;
    target.sin6_port = htons(anyPort);
    target.sin6_addr = address;
    return hasRoute(AF_INET6, target);
}

/// An address family that the kernel lacks is no shortage: there is no route then.
bool hasRouteToInternet() {
    in_addr fourth{};
    in6_addr sixth{};
    ::inet_pton(AF_INET, "192.0.2.1", &fourth);
    ::inet_pton(AF_INET6, "2001:db8::1", &sixth);
    if (hasRoute(fourth)) {
        return true;
    }
    return UdpSocket{AF_INET6}.isOpen() && hasRoute(sixth);
}

bool isLoopbackName(std::string_view host) {
    constexpr std::string_view localhost = "localhost";
    if (host.size() < localhost.size() ||
        !equalsIgnoringAsciiCase(host.substr(host.size() - localhost.size()), localhost)) {
        return false;
    }
    return host.size() == localhost.size() || host[host.size() - localhost.size() - 1] == '.';
}

class RouteReachability final : public Reachability {
public:
    [[nodiscard]] bool isReachable(std::string_view urlText) const override {
        if (urlText.empty()) {
            return false;
        }
        const auto url = Url::fromString(urlText);
        const std::string host{url ? url->host() : std::string_view{}};
        in_addr fourth{};
        if (::inet_pton(AF_INET, host.c_str(), &fourth) == 1) {
            constexpr std::uint32_t loopbackNet = 127;
            return ntohl(fourth.s_addr) >> 24U == loopbackNet || hasRoute(fourth);
        }
        in6_addr sixth{};
        if (::inet_pton(AF_INET6, host.c_str(), &sixth) == 1) {
            return std::memcmp(&sixth, &in6addr_loopback, sizeof sixth) == 0 || hasRoute(sixth);
        }
        return isLoopbackName(host) || hasRouteToInternet();
    }
};

}  // namespace

std::shared_ptr<const Reachability> makeRouteReachability() {
    return std::make_shared<RouteReachability>();
}

}  // namespace Tarnwick_API::Platform
