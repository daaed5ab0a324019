#include "Http/HttpServer.hpp"

#include "Http/ConnectionThreads.hpp"
#include "Http/Conversation.hpp"
#include "Http/TlsContext.hpp"

#include <chrono>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace TarnwickService {
namespace {

namespace asio = boost::asio;
using Tcp = asio::ip::tcp;
using ErrorCode = boost::system::error_code;

Tcp::endpoint endpointOf(const HttpServer::Settings& settings) {
    ErrorCode error;
    const auto address = asio::ip::make_address(settings.address, error);
    if (error) {
        throw std::invalid_argument("not an IP address: " + settings.address);
    }
    return {address, settings.port};
}

// By hand, as the exceptions of the library name its source files.
Tcp::acceptor listeningOn(asio::io_context& context, const Tcp::endpoint& endpoint) {
    Tcp::acceptor acceptor(context);
    ErrorCode error;
    static_cast<void>(acceptor.open(endpoint.protocol(), error));
    if (!error) {
        static_cast<void>(acceptor.set_option(Tcp::acceptor::reuse_address(true), error));
    }
    if (!error) {
        static_cast<void>(acceptor.bind(endpoint, error));
    }
    if (!error) {
        static_cast<void>(acceptor.listen(asio::socket_base::max_listen_connections, error));
    }
    if (error) {
        throw std::system_error(
            error, "cannot listen on " + endpoint.address().to_string() + ", port " + std::to_string(endpoint.port()));
    }
    return acceptor;
}

}  // namespace

class HttpServer::Listener {
public:
    explicit Listener(Settings settings)
        : settings_(std::move(settings)),
          tls_(settings_.certificate ? makeTlsContext(*settings_.certificate) : nullptr),
          acceptor_(listeningOn(context_, endpointOf(settings_))),
          port_(acceptor_.local_endpoint().port()),
          connections_([this](Tcp::socket& socket) { serve(socket); }) {}

    ~Listener() { stop(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::uint16_t port() const { return port_; }

    void start(RequestHandler handler) {
        handler_ = std::move(handler);
        accept();
        thread_ = std::thread([this] { context_.run(); });
    }

    void stop() {
        if (!thread_.joinable()) {
            return;
        }
        context_.stop();
        thread_.join();
        ErrorCode ignored;
        static_cast<void>(acceptor_.close(ignored));
        connections_.stop();
    }

private:
    void accept() {
        acceptor_.async_accept([this](ErrorCode error, Tcp::socket socket) {
            if (error == asio::error::operation_aborted) {
                return;
            }
            if (!error) {
                begin(std::move(socket));
            } else {
                // Out of descriptors: the next try would fail at once again and keep a core busy.
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            accept();
        });
    }

    void begin(Tcp::socket socket) {
        ErrorCode ignored;
        static_cast<void>(socket.set_option(Tcp::no_delay(true), ignored));
        connections_.begin(std::move(socket));
    }

    void serve(Tcp::socket& socket) {
        if (const auto ending = settings_.onConnection()) {
            leaveUnanswered(socket, *ending);
        } else {
            converse(socket, tls_.get(), handler_, settings_.largestBody);
        }
    }

    Settings settings_;
    RequestHandler handler_;
    std::unique_ptr<asio::ssl::context> tls_;
    asio::io_context context_{1};
    Tcp::acceptor acceptor_;
    std::uint16_t port_;
    ConnectionThreads connections_;
    std::thread thread_;
};

HttpServer::HttpServer(Settings settings) : listener_(std::make_unique<Listener>(std::move(settings))) {
}

HttpServer::~HttpServer() = default;

std::uint16_t HttpServer::port() const {
    return listener_->port();
}

void HttpServer::start(RequestHandler handler) {
    listener_->start(std::move(handler));
}

void HttpServer::stop() {
    listener_->stop();
}

}  // namespace TarnwickService
