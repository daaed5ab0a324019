#pragma once

#include <Platform/Http/Transfers/OptionSetter.hpp>

#include <string_view>
#include <unordered_map>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// The sockets of libcurl's connections, opened and closed here: so a program that the host executes does not inherit
/// them, and a connection kept from an earlier request can be looked at before the next one goes out on it. Thread: the
/// I/O thread.
class ConnectionSockets {
public:
    /// The end of a connection on this machine, by which libcurl tells one from another.
    struct LocalEnd {
        std::string_view address;
        long port;
    };

    /// Lets the connections that a handle opens have their sockets from here. This must outlive the connections.
    void serve(OptionSetter& set);

    /// Notes that a connection carries one request at a time: what comes in between two was not asked for.
    void noteOneAtATime(const LocalEnd& end);

    /// Whether such a connection, idle until now, has been closed by the server or holds bytes that nobody asked for,
    /// which libcurl would take for the next answer.
    [[nodiscard]] bool isSpoilt(const LocalEnd& end) const;

private:
    static curl_socket_t open(void* sockets, curlsocktype purpose, curl_sockaddr* address) noexcept;
    static int close(void* sockets, curl_socket_t socket) noexcept;

    [[nodiscard]] curl_socket_t find(const LocalEnd& end) const;

    /// Whether each carries one request at a time, as far as is known.
    std::unordered_map<curl_socket_t, bool> sockets_;
};

}  // namespace Tarnwick_API::Platform
