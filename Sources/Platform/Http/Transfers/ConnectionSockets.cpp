#include <Platform/Http/Transfers/ConnectionSockets.hpp>

#include <Platform/Http/Transfers/ConnectionRoute.hpp>
#include <Platform/Http/Transfers/PrivateSocket.hpp>

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

/// As libcurl writes it.
Connection::End endAt(const sockaddr_storage& storage) {
    const void* address = nullptr;
    long port = 0;
    if (storage.ss_family == AF_INET) {
        const auto& v4 = reinterpret_cast<const sockaddr_in&>(storage);
        address = &v4.sin_addr;
        port = ntohs(v4.sin_port);
    } else if (storage.ss_family == AF_INET6) {
        const auto& v6 = reinterpret_cast<const sockaddr_in6&>(storage);
        address = &v6.sin6_addr;
        port = ntohs(v6.sin6_port);
    }
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (address == nullptr || ::inet_ntop(storage.ss_family, address, text.data(), text.size()) == nullptr) {
        return {};
    }
    return {text.data(), port};
}

Connection::End localEnd(curl_socket_t socket) {
    sockaddr_storage storage{};
    socklen_t length = sizeof storage;
    return ::getsockname(socket, reinterpret_cast<sockaddr*>(&storage), &length) == 0 ? endAt(storage)
                                                                                      : Connection::End{};
}

bool isAt(const Connection::End& end, std::string_view address, long port) noexcept {
    return end.port == port && end.address == address;
}

ino_t identityOf(curl_socket_t socket) noexcept {
    struct stat status {};
    return ::fstat(socket, &status) == 0 ? status.st_ino : 0;
}

/// libcurl finds it dead when it next looks at it, and closes the socket.
void end(const Connection& connection) noexcept {
    ::shutdown(connection.socket, SHUT_RDWR);
}

void retireOne(Connection& connection) noexcept {
    // One that is still being opened was not in use when what retires the others happened.
    if (connection.origin.empty()) {
        return;
    }
    connection.isRetired = true;
    if (connection.isIdle()) {
        end(connection);
    }
}

}  // namespace

void ConnectionSockets::serve(OptionSetter& set) {
    set(CURLOPT_OPENSOCKETFUNCTION, &ConnectionSockets::open);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_CLOSESOCKETFUNCTION, &ConnectionSockets::close);
    set(CURLOPT_CLOSESOCKETDATA, this);
}

std::shared_ptr<Connection> ConnectionSockets::find(const Ends& ends) const {
    for (const auto& [socket, connection] : connections_) {
        if (!isAt(connection->remote, ends.remoteAddress, ends.remotePort)) {
            continue;
        }
        // The system is asked but once for each.
        if (connection->origin.empty()) {
            connection->local = localEnd(socket);
        }
        if (isAt(connection->local, ends.localAddress, ends.localPort)) {
            return connection;
        }
    }
    return nullptr;
}

void ConnectionSockets::retire(std::string_view origin) noexcept {
    for (const auto& [socket, connection] : connections_) {
        if (connection->origin == origin) {
            retireOne(*connection);
        }
    }
}

void ConnectionSockets::retireAll() noexcept {
    for (const auto& [socket, connection] : connections_) {
        retireOne(*connection);
    }
}

void ConnectionSockets::endIdle() noexcept {
    for (const auto& [socket, connection] : connections_) {
        if (connection->isIdle()) {
            retireOne(*connection);
        }
    }
}

void ConnectionSockets::endStrayAttempts() noexcept {
    for (const auto& [socket, connection] : connections_) {
        // libcurl closes an attempt that it gives up without a word, and the number may be the host's by now.
        if (connection->origin.empty() && identityOf(socket) == connection->identity &&
            leadsElsewhere(socket, connection->peer)) {
            end(*connection);
        }
    }
}

void ConnectionSockets::release(Connection& connection) noexcept {
    --connection.transfers;
    if (connection.isRetired && connection.isIdle()) {
        end(connection);
    }
}

bool ConnectionSockets::isSpoilt(const Connection& connection) noexcept {
    // The end of a connection is readable too.
    pollfd wanted{.fd = connection.socket, .events = POLLIN, .revents = 0};
    return connection.isOneAtATime && ::poll(&wanted, 1, 0) > 0;
}

curl_socket_t ConnectionSockets::open(void* sockets, curlsocktype /*purpose*/, curl_sockaddr* address) noexcept {
    const auto socket = openPrivateSocket(address->family, address->socktype, address->protocol);
    if (socket != CURL_SOCKET_BAD) {
        try {
            auto connection = std::make_shared<Connection>();
            connection->socket = socket;
            connection->identity = identityOf(socket);
            std::memcpy(&connection->peer, &address->addr,
                        std::min<std::size_t>(address->addrlen, sizeof connection->peer));
            connection->remote = endAt(connection->peer);
            // In place of an attempt of that number which libcurl has closed without a word.
            static_cast<ConnectionSockets*>(sockets)->connections_.insert_or_assign(socket, std::move(connection));
        } catch (const std::exception&) {
            ::close(socket);
            return CURL_SOCKET_BAD;
        }
    }
    return socket;
}

int ConnectionSockets::close(void* sockets, curl_socket_t socket) noexcept {
    auto& connections = static_cast<ConnectionSockets*>(sockets)->connections_;
    if (const auto entry = connections.find(socket); entry != connections.end()) {
        // Transfers may still know it, but the number may soon be another's.
        entry->second->socket = CURL_SOCKET_BAD;
        connections.erase(entry);
    }
    return ::close(socket);
}

}  // namespace Tarnwick_API::Platform
