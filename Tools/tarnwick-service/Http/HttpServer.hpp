#pragma once

#include "Certificates/Certificates.hpp"
#include "Http/Exchange.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace TarnwickService {

/// An HTTP/1.1 server, over TLS when it is given a certificate: one thread per connection, which stays open for as many
/// requests as the client likes.
class HttpServer {
public:
    struct Settings {
        std::string address = "127.0.0.1";
        std::uint16_t port = 0;
        std::optional<Certificate> certificate{};
        std::size_t largestBody = std::size_t{1} << 20U;
        /// Called on each connection's thread first. With an ending nothing is said on it.
        std::function<std::optional<Ending>()> onConnection = [] { return std::nullopt; };
    };

    /// Takes the port. Throws std::invalid_argument for an address that is none, std::system_error when the port cannot
    /// be had or the certificate cannot be used.
    explicit HttpServer(Settings settings);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::uint16_t port() const;

    /// Begins to answer, on the connections' threads; to be called once.
    void start(RequestHandler handler);

    /// Cuts every connection and waits for the threads. A handler that waits must have been told to give up before.
    void stop();

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

}  // namespace TarnwickService
