#include <Platform/Http/Transfers/RouteMonitor.hpp>

#include <array>
#include <cerrno>
#include <cstddef>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

/// Routes of both families tell nearly all. IPv4 drops those of an interface that goes down without a word of them; its
/// links and addresses speak then. Renewed lifetimes of IPv6 addresses, which come every few minutes, are left out.
constexpr unsigned groups = RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE | RTMGRP_IPV4_IFADDR | RTMGRP_LINK;

bool isChange(const nlmsghdr& header) noexcept {
    switch (header.nlmsg_type) {
        case RTM_NEWROUTE:
        case RTM_DELROUTE: {
            // Copies of routes that the kernel makes for single peers.
            const auto* const route = static_cast<const rtmsg*>(NLMSG_DATA(&header));
            return (route->rtm_flags & RTM_F_CLONED) == 0;
        }
        case RTM_DELADDR:
        case RTM_DELLINK:
            return true;
        case RTM_NEWLINK: {
            const auto* const link = static_cast<const ifinfomsg*>(NLMSG_DATA(&header));
            return (link->ifi_change & static_cast<unsigned>(IFF_UP)) != 0;
        }
        default:
            return false;
    }
}

}  // namespace

RouteMonitor::RouteMonitor() noexcept
    : descriptor_{::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)} {
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = groups;
    if (descriptor_ >= 0 && ::bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(descriptor_);
        descriptor_ = -1;
    }
}

RouteMonitor::~RouteMonitor() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

bool RouteMonitor::takeChanges() noexcept {
    constexpr std::size_t room = 16384;
    alignas(nlmsghdr) std::array<std::byte, room> buffer{};
    bool hasChanged = false;
    while (descriptor_ >= 0) {
        const auto size = ::recv(descriptor_, buffer.data(), buffer.size(), 0);
        if (size < 0 && errno == ENOBUFS) {
            // More came than the system keeps: some were lost.
            hasChanged = true;
            continue;
        }
        if (size <= 0) {
            break;
        }
        auto left = static_cast<unsigned>(size);
        for (const auto* header = reinterpret_cast<const nlmsghdr*>(buffer.data());
             !hasChanged && NLMSG_OK(header, left); header = NLMSG_NEXT(header, left)) {
            hasChanged = isChange(*header);
        }
    }
    return hasChanged;
}

}  // namespace Tarnwick_API::Platform
