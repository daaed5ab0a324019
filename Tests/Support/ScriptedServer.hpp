#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <Certificates/Certificates.hpp>
#include <openssl/ssl.h>

/// What a `ScriptedServer` does with one request.
struct ScriptedAnswer {
    enum class Then {
        keepOpen,
        close,
        hold,  ///< says nothing more, until the client goes
    };
    std::string bytes;
    Then then = Then::keepOpen;
    /// So many requests must have come before it says anything.
    std::size_t afterRequests = 0;
};

/// A whole answer with a body and its length.
[[nodiscard]] ScriptedAnswer okAnswer(const std::string& body, const std::string& headers = {});

/// A server on 127.0.0.1 that records the exact bytes of each request and answers exact bytes, over TLS when given a
/// certificate. A request that no answer was scripted for gets its connection closed. Over HTTP/2 a request is the
/// frame that opens its stream, and an answer any frames.
class ScriptedServer {
public:
    enum class Protocol { http1, http2 };

    explicit ScriptedServer(const std::optional<TarnwickService::Certificate>& certificate = std::nullopt,
                            Protocol protocol = Protocol::http1);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// The answer to the next request that has none yet.
    void answer(ScriptedAnswer answer);
    /// The answer to each request from now on.
    void answerAlways(ScriptedAnswer answer);

    /// Sends bytes that nobody asked for on every open connection. Without TLS only.
    void say(const std::string& bytes);

    [[nodiscard]] int port() const noexcept { return port_; }
    [[nodiscard]] std::string authority() const { return "127.0.0.1:" + std::to_string(port_); }
    /// "http://127.0.0.1:PORT" or "https://...".
    [[nodiscard]] std::string url() const;

    /// The requests so far, in order of arrival.
    [[nodiscard]] std::vector<std::string> requests() const;
    [[nodiscard]] std::size_t connections() const;
    /// Returns once `count` requests have come; false when they haven't in a minute.
    [[nodiscard]] bool waitForRequests(std::size_t count) const;
    /// The same for connections that the client has closed, or the server after an answer that ends with `close`.
    [[nodiscard]] bool waitForClosed(std::size_t count) const;

private:
    class Connection;

    void acceptConnections();
    void serve(Connection& connection);
    [[nodiscard]] std::optional<ScriptedAnswer> record(std::string request);

    struct ContextDelete {
        void operator()(SSL_CTX* context) const noexcept { SSL_CTX_free(context); }
    };
    std::unique_ptr<SSL_CTX, ContextDelete> context_;
    Protocol protocol_;
    int listener_ = -1;
    int port_ = 0;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::deque<ScriptedAnswer> answers_;
    std::optional<ScriptedAnswer> always_;
    std::vector<std::string> requests_;
    std::vector<std::unique_ptr<Connection>> connections_;
    std::size_t closed_ = 0;
    bool isStopping_ = false;
    std::thread acceptor_;
    std::vector<std::thread> threads_;
};
