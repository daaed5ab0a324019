#include "Http/ConnectionThreads.hpp"

#include <system_error>
#include <utility>

#include <sys/socket.h>

namespace TarnwickService {

// The system call, not the socket object's own: that one may be in use on the connection's thread.
void ConnectionThreads::Connection::interrupt() {
    if (!finished) {
        ::shutdown(socket.native_handle(), SHUT_RDWR);
    }
}

void ConnectionThreads::begin(Socket socket) {
    reap();
    const std::lock_guard lock(mutex_);
    Connection& connection = connections_.emplace_back(std::move(socket));
    try {
        connection.thread = std::thread([this, &connection] { run(connection); });
    } catch (const std::system_error&) {
        connections_.pop_back();
    }
}

void ConnectionThreads::stop() {
    {
        const std::lock_guard lock(mutex_);
        for (Connection& connection : connections_) {
            connection.interrupt();
        }
    }
    // Without the lock, which the threads take at their end; nobody else changes the list meanwhile.
    for (Connection& connection : connections_) {
        connection.thread.join();
    }
    connections_.clear();
}

void ConnectionThreads::run(Connection& connection) {
    serve_(connection.socket);
    const std::lock_guard lock(mutex_);
    boost::system::error_code ignored;
    static_cast<void>(connection.socket.close(ignored));
    connection.finished = true;
}

void ConnectionThreads::reap() {
    std::list<Connection> over;
    {
        const std::lock_guard lock(mutex_);
        for (auto it = connections_.begin(); it != connections_.end();) {
            const auto current = it++;
            if (current->finished) {
                over.splice(over.end(), connections_, current);
            }
        }
    }
    for (Connection& connection : over) {
        connection.thread.join();
    }
}

}  // namespace TarnwickService
