#pragma once

#include <functional>
#include <list>
#include <mutex>
#include <thread>

#include <boost/asio/ip/tcp.hpp>

namespace TarnwickService {

/// The open connections, each served on a thread of its own. `begin` and `stop` must take turns.
class ConnectionThreads {
public:
    using Socket = boost::asio::ip::tcp::socket;
    /// Returns when the connection is over. Called on the connections' threads.
    using Serve = std::function<void(Socket&)>;

    explicit ConnectionThreads(Serve serve) : serve_(std::move(serve)) {}
    ~ConnectionThreads() { stop(); }
    ConnectionThreads(const ConnectionThreads&) = delete;
    ConnectionThreads& operator=(const ConnectionThreads&) = delete;

    /// Drops the connection when there are no more threads to be had.
    void begin(Socket socket);

    /// Cuts every connection and waits for the threads.
    void stop();

private:
    struct Connection {
        explicit Connection(Socket accepted) : socket(std::move(accepted)) {}

        void interrupt();

        Socket socket;
        std::thread thread;
        bool finished = false;
    };

    void run(Connection& connection);
    void reap();

    Serve serve_;
    std::mutex mutex_;
    std::list<Connection> connections_;
};

}  // namespace TarnwickService
