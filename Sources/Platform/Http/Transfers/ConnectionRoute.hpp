#pragma once

#include <curl/curl.h>
#include <sys/socket.h>

namespace Tarnwick_API::Platform {

/// Whether packets to `peer` now leave by another network interface than the one that has the local address of
/// `socket`, a TCP connection to `peer` or an attempt at one: then that is lost for sure. False when there is no route
/// at all, as one may come back. Sends nothing.
[[nodiscard]] bool leadsElsewhere(curl_socket_t socket, const sockaddr_storage& peer) noexcept;

}  // namespace Tarnwick_API::Platform
