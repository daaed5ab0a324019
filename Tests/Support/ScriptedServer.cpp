#include "ScriptedServer.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::chrono::minutes guard{1};

using Memory = std::unique_ptr<BIO, decltype(&BIO_free)>;

Memory readable(const std::string& pem) {
    return {BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())), &BIO_free};
}

void require(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error{what};
    }
}

SSL_CTX* makeContext(const TarnwickService::Certificate& certificate) {
    auto* const context = SSL_CTX_new(TLS_server_method());
    require(context != nullptr, "SSL_CTX_new");
    const auto text = readable(certificate.certificatePem);
    const std::unique_ptr<X509, decltype(&X509_free)> own{PEM_read_bio_X509(text.get(), nullptr, nullptr, nullptr),
                                                          &X509_free};
    const auto keyText = readable(certificate.privateKeyPem);
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key{
        PEM_read_bio_PrivateKey(keyText.get(), nullptr, nullptr, nullptr), &EVP_PKEY_free};
    require(SSL_CTX_use_certificate(context, own.get()) == 1, "certificate");
    require(SSL_CTX_use_PrivateKey(context, key.get()) == 1, "private key");
    return context;
}

std::size_t contentLength(const std::string& head) {
    auto lower = head;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    constexpr std::string_view name = "\r\ncontent-length:";
    const auto place = lower.find(name);
    return place == std::string::npos ? 0 : std::stoul(lower.substr(place + name.size()));
}

int chooseHttp2(SSL* /*tls*/, const unsigned char** chosen, unsigned char* length, const unsigned char* /*offered*/,
                unsigned /*offeredLength*/, void* /*argument*/) {
    static constexpr std::array<unsigned char, 2> http2{'h', '2'};
    *chosen = http2.data();
    *length = http2.size();
    return SSL_TLSEXT_ERR_OK;
}

}  // namespace

ScriptedAnswer okAnswer(const std::string& body, const std::string& headers) {
    return {"HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + headers + "\r\n" + body};
}

class ScriptedServer::Connection {
public:
    Connection(int descriptor, SSL_CTX* context)
        : descriptor_{descriptor}, tls_{context == nullptr ? nullptr : SSL_new(context), &SSL_free} {
        const int on = 1;
        ::setsockopt(descriptor_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        if (tls_) {
            SSL_set_fd(tls_.get(), descriptor_);
        }
    }
    ~Connection() { ::close(descriptor_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] bool handshake() { return !tls_ || SSL_accept(tls_.get()) == 1; }

    /// Adds some bytes to `buffer`; false at the end of the connection.
    [[nodiscard]] bool read(std::string& buffer) {
        std::array<char, 16384> bytes{};
        const auto count = tls_ ? SSL_read(tls_.get(), bytes.data(), static_cast<int>(bytes.size()))
                                : ::recv(descriptor_, bytes.data(), bytes.size(), 0);
        buffer.append(bytes.data(), static_cast<std::size_t>(std::max<long>(count, 0)));
        return count > 0;
    }

    [[nodiscard]] bool write(const std::string& bytes) {
        if (tls_) {
            return bytes.empty() || SSL_write(tls_.get(), bytes.data(), static_cast<int>(bytes.size())) > 0;
        }
        for (std::size_t sent = 0; sent < bytes.size();) {
            const auto count = ::send(descriptor_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                return false;
            }
            sent += static_cast<std::size_t>(count);
        }
        return true;
    }

    /// Takes the next `size` bytes off `buffer`, once they have come.
    [[nodiscard]] std::optional<std::string> take(std::size_t size, std::string& buffer) {
        while (buffer.size() < size) {
            if (!read(buffer)) {
                return std::nullopt;
            }
        }
        auto bytes = buffer.substr(0, size);
        buffer.erase(0, size);
        return bytes;
    }

    /// A head, and the body whose length that says.
    [[nodiscard]] std::optional<std::string> takeHttp1Request(std::string& buffer) {
        std::size_t end = 0;
        while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
            if (!read(buffer)) {
                return std::nullopt;
            }
        }
        return take(end + 4 + contentLength(buffer.substr(0, end + 2)), buffer);
    }

    [[nodiscard]] bool openHttp2(std::string& buffer) {
        constexpr std::size_t preface = 24;
        const std::string emptySettings{"\0\0\0\4\0\0\0\0\0", 9};
        return take(preface, buffer) && write(emptySettings);
    }

    /// Passes over what doesn't open a stream.
    [[nodiscard]] std::optional<std::string> takeHttp2Request(std::string& buffer) {
        constexpr char headers = 1;
        while (const auto head = take(9, buffer)) {
            const auto byte = [&](std::size_t index) { return static_cast<unsigned char>((*head)[index]); };
            const auto payload = take(byte(0) * 65536U + byte(1) * 256U + byte(2), buffer);
            if (payload && (*head)[3] == headers) {
                return *head + *payload;
            }
        }
        return std::nullopt;
    }

    /// Thread: any.
    void interrupt() const { ::shutdown(descriptor_, SHUT_RDWR); }

    void finish() {
        if (tls_) {
            SSL_shutdown(tls_.get());
        }
        ERR_clear_error();
        interrupt();
    }

private:
    int descriptor_;
    std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
};

ScriptedServer::ScriptedServer(const std::optional<TarnwickService::Certificate>& certificate, Protocol protocol)
    : context_{certificate ? makeContext(*certificate) : nullptr}, protocol_{protocol} {
    if (protocol_ == Protocol::http2) {
        SSL_CTX_set_alpn_select_cb(context_.get(), &chooseHttp2, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    require(::bind(listener_, generic, length) == 0, "bind");
    require(::listen(listener_, SOMAXCONN) == 0, "listen");
    require(::getsockname(listener_, generic, &length) == 0, "getsockname");
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread{[this] { acceptConnections(); }};
}

ScriptedServer::~ScriptedServer() {
    {
        const std::lock_guard lock{mutex_};
        isStopping_ = true;
        for (const auto& connection : connections_) {
            connection->interrupt();
        }
    }
    ::shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (auto& thread : threads_) {
        thread.join();
    }
    ::close(listener_);
}

std::string ScriptedServer::url() const {
    return (context_ ? "https://" : "http://") + authority();
}

void ScriptedServer::answer(ScriptedAnswer answer) {
    const std::lock_guard lock{mutex_};
    answers_.push_back(std::move(answer));
}

void ScriptedServer::answerAlways(ScriptedAnswer answer) {
    const std::lock_guard lock{mutex_};
    always_ = std::move(answer);
}

void ScriptedServer::say(const std::string& bytes) {
    const std::lock_guard lock{mutex_};
    for (const auto& connection : connections_) {
        static_cast<void>(connection->write(bytes));
    }
}

std::vector<std::string> ScriptedServer::requests() const {
    const std::lock_guard lock{mutex_};
    return requests_;
}

std::size_t ScriptedServer::connections() const {
    const std::lock_guard lock{mutex_};
    return connections_.size();
}

bool ScriptedServer::waitForRequests(std::size_t count) const {
    std::unique_lock lock{mutex_};
    return changed_.wait_for(lock, guard, [&] { return requests_.size() >= count; });
}

bool ScriptedServer::waitForClosed(std::size_t count) const {
    std::unique_lock lock{mutex_};
    return changed_.wait_for(lock, guard, [&] { return closed_ >= count; });
}

void ScriptedServer::acceptConnections() {
    while (true) {
        const int descriptor = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor < 0) {
            return;
        }
        const std::lock_guard lock{mutex_};
        auto& connection = *connections_.emplace_back(std::make_unique<Connection>(descriptor, context_.get()));
        if (isStopping_) {
            return;
        }
        threads_.emplace_back([this, &connection] { serve(connection); });
    }
}

void ScriptedServer::serve(Connection& connection) {
    const bool isHttp2 = protocol_ == Protocol::http2;
    std::string buffer;
    bool goesOn = connection.handshake() && (!isHttp2 || connection.openHttp2(buffer));
    while (goesOn) {
        auto request = isHttp2 ? connection.takeHttp2Request(buffer) : connection.takeHttp1Request(buffer);
        if (!request) {
            break;
        }
        const auto answer = record(*std::move(request));
        goesOn = answer && waitForRequests(answer->afterRequests) && connection.write(answer->bytes) &&
                 answer->then != ScriptedAnswer::Then::close;
        while (goesOn && answer->then == ScriptedAnswer::Then::hold) {
            goesOn = connection.read(buffer);
        }
    }
    connection.finish();
    const std::lock_guard lock{mutex_};
    ++closed_;
    changed_.notify_all();
}

std::optional<ScriptedAnswer> ScriptedServer::record(std::string request) {
    const std::lock_guard lock{mutex_};
    requests_.push_back(std::move(request));
    changed_.notify_all();
    if (answers_.empty()) {
        return always_;
    }
    auto answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
}
