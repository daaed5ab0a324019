#pragma once

#include <Platform/Http/Transfers/OptionSetter.hpp>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include <curl/curl.h>
#include <sys/socket.h>

namespace Tarnwick_API::Platform {

/// One of libcurl's connections, as far as this end knows it.
struct Connection {
    struct End {
        std::string address;
        long port = 0;
    };

    curl_socket_t socket = CURL_SOCKET_BAD;
    /// Tells the socket from a later one of the same number.
    ino_t identity = 0;
    sockaddr_storage peer{};
    End remote;
    /// Empty until the first request goes out.
    End local;
    /// The origin that it serves (`originKey`); empty until then, too.
    std::string origin;
    /// Requests that it carries now.
    std::size_t transfers = 0;
    /// Answers that came over it whole.
    std::size_t answers = 0;
    /// Carries one request at a time: what comes in between two was not asked for.
    bool isOneAtATime = false;
    /// Takes no further requests, and ends with those that it carries.
    bool isRetired = false;
    /// When one of its transfers last got on, as far as anybody wanted to know.
    std::chrono::steady_clock::time_point heardAt;

    /// Whether the server has said how many requests at once it takes, and sent back those that were more: with the
    /// first answer these may still be on their way.
    [[nodiscard]] bool isTried() const noexcept { return answers > 1; }
    [[nodiscard]] bool isIdle() const noexcept { return transfers == 0 && !origin.empty(); }
};

/// The sockets of libcurl's connections, opened and closed here: so a program that the host executes does not inherit
/// them, and a connection kept from an earlier request can be looked at before the next one goes out on it, and ended
/// when it is not to be used again. Thread: the I/O thread.
class ConnectionSockets {
public:
    /// What libcurl tells of a connection, by which it is found here.
    struct Ends {
        std::string_view localAddress;
        long localPort;
        std::string_view remoteAddress;
        long remotePort;
    };

    /// Lets the connections that a handle opens have their sockets from here. This must outlive the connections.
    void serve(OptionSetter& set);

    /// The connection between `ends`; null when it is none of these.
    [[nodiscard]] std::shared_ptr<Connection> find(const Ends& ends) const;

    /// Lets no further request go out on the connections of `origin`; the idle ones end at once.
    void retire(std::string_view origin) noexcept;
    /// The same for all connections.
    void retireAll() noexcept;
    /// Ends all that carry no request.
    void endIdle() noexcept;
    /// Ends attempts to connect that were begun from an address whose network no longer leads to the peer.
    void endStrayAttempts() noexcept;

    /// A request that `connection` carried has ended.
    static void release(Connection& connection) noexcept;

    /// Whether `connection`, idle until now, has been closed by the server or holds bytes that nobody asked for, which
    /// libcurl would take for the next answer.
    [[nodiscard]] static bool isSpoilt(const Connection& connection) noexcept;

private:
    static curl_socket_t open(void* sockets, curlsocktype purpose, curl_sockaddr* address) noexcept;
    static int close(void* sockets, curl_socket_t socket) noexcept;

    std::unordered_map<curl_socket_t, std::shared_ptr<Connection>> connections_;
};

}  // namespace Tarnwick_API::Platform
