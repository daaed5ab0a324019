// One thread runs the event loop, so its memory fences order nothing; g++'s thread sanitizer refuses to compile them.
#define BOOST_ASIO_DISABLE_FENCED_BLOCK

#include "Http/HttpServer.hpp"

#include "Http/HttpDate.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <ctime>
#include <list>
#include <mutex>
#include <string_view>
#include <thread>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>
#include <boost/beast/http/string_body.hpp>
#include <sys/socket.h>

namespace TarnwickService {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using Tcp = asio::ip::tcp;
using ErrorCode = boost::system::error_code;

std::string_view toView(boost::beast::string_view text) {
    return {text.data(), text.size()};
}

void appendNumber(std::string& text, std::uint64_t number) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text.append(digits.data(), end.ptr);
}

// Formatting a date takes longer than the rest of a small answer, and it changes but once a second.
class DateText {
public:
    const std::string& now() {
        const std::time_t second = std::time(nullptr);
        if (second != second_) {
            second_ = second;
            text_ = httpDate(second);
        }
        return text_;
    }

private:
    std::time_t second_ = -1;
    std::string text_;
};

bool mayHaveBody(unsigned status) {
    return status >= 200 && status != 204 && status != 304;
}

void writeHeaderBlock(std::string& out, const Answer& answer, const std::string& date, bool keepAlive) {
    out += "HTTP/1.1 ";
    appendNumber(out, answer.status);
    out += ' ';
    out += toView(http::obsolete_reason(http::int_to_status(answer.status)));
    out += "\r\nServer: tarnwick-service\r\n";
    if (!answer.hasHeader("Date")) {
        out += "Date: ";
        out += date;
        out += "\r\n";
    }
    if (mayHaveBody(answer.status)) {
        if (!answer.contentType.empty()) {
            out += "Content-Type: ";
            out += answer.contentType;
            out += "\r\n";
        }
        out += "Content-Length: ";
        appendNumber(out, answer.damage.contentLength.value_or(answer.bytes().size()));
        out += "\r\n";
    }
    for (const auto& [name, value] : answer.headers) {
        out += name;
        out += ": ";
        out += value;
        out += "\r\n";
    }
    if (!keepAlive) {
        out += "Connection: close\r\n";
    }
    out += "\r\n";
}

// Small bodies travel in the same record and system call as their header block.
constexpr std::size_t largestJoinedBody = std::size_t{64} << 10U;

template <typename Stream>
class Conversation {
public:
    Conversation(Stream& stream, const HttpServer::Handler& handler, std::size_t largestBody)
        : stream_(stream), handler_(handler), largestBody_(largestBody) {}

    void run() {
        bool open = true;
        while (open) {
            open = exchange();
        }
    }

private:
    bool exchange() {
        http::request_parser<http::string_body> parser;
        parser.body_limit(largestBody_);
        ErrorCode error;
        http::read(stream_, buffer_, parser, error);
        if (error) {
            static const auto& malformed = http::make_error_code(http::error::bad_method).category();
            if (error == http::error::end_of_stream || error.category() != malformed) {
                return false;
            }
            write(plainText(error == http::error::body_limit ? 413 : 400, error.message()), false);
            return false;
        }
        const auto& message = parser.get();
        readRequest(message);
        Answer answer;
        try {
            answer = handler_(request_);
        } catch (const Refusal& refusal) {
            answer = plainText(refusal.status(), refusal.what());
        } catch (const std::exception& failure) {
            answer = plainText(500, failure.what());
        }
        return write(answer, message.keep_alive());
    }

    void readRequest(const http::request<http::string_body>& message) {
        request_.method = toView(message.method_string());
        request_.target = toView(message.target());
        request_.body = message.body();
        request_.headers.clear();
        for (const auto& field : message) {
            request_.headers.push_back({toView(field.name_string()), toView(field.value())});
        }
    }

    bool write(const Answer& answer, bool keepAlive) {
        const Damage& damage = answer.damage;
        if (damage.cut == Cut::beforeAnswer) {
            return false;
        }
        // After a false length neither side knows where the next answer begins.
        keepAlive = keepAlive && damage.cut == Cut::none && !damage.contentLength;
        out_.clear();
        writeHeaderBlock(out_, answer, date_.now(), keepAlive);
        std::string_view body = mayHaveBody(answer.status) ? std::string_view(answer.bytes()) : std::string_view();
        if (damage.cut == Cut::insideHeader) {
            out_.resize(out_.size() / 2);
            body = {};
        } else if (damage.cut == Cut::afterBodyBytes) {
            body = body.substr(0, std::min(body.size(), damage.bodyBytes));
        }
        ErrorCode error;
        if (body.size() <= largestJoinedBody) {
            out_ += body;
            body = {};
        }
        asio::write(stream_, asio::buffer(out_), error);
        if (!error && !body.empty()) {
            asio::write(stream_, asio::buffer(body), error);
        }
        return !error && keepAlive;
    }

    Stream& stream_;
    const HttpServer::Handler& handler_;
    std::size_t largestBody_;
    boost::beast::flat_buffer buffer_;
    DateText date_;
    Request request_;
    std::string out_;
};

// Clients that offer HTTP/2 must be told that it is not spoken here, else some of them assume that it is.
int chooseProtocol(SSL* /*connection*/, const unsigned char** chosen, unsigned char* chosenLength,
                   const unsigned char* offered, unsigned int offeredLength, void* /*unused*/) {
    static constexpr std::array<unsigned char, 9> http11{8, 'h', 't', 't', 'p', '/', '1', '.', '1'};
    unsigned char* out = nullptr;
    const int result = SSL_select_next_proto(&out, chosenLength, http11.data(), http11.size(), offered, offeredLength);
    *chosen = out;
    return result == OPENSSL_NPN_NEGOTIATED ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_NOACK;
}

std::unique_ptr<asio::ssl::context> makeTlsContext(const std::optional<Certificate>& certificate) {
    if (!certificate) {
        return nullptr;
    }
    auto context = std::make_unique<asio::ssl::context>(asio::ssl::context::tls_server);
    context->set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 |
                         asio::ssl::context::no_tlsv1_1);
    context->use_certificate_chain(asio::buffer(certificate->certificatePem));
    context->use_private_key(asio::buffer(certificate->privateKeyPem), asio::ssl::context::pem);
    SSL_CTX_set_alpn_select_cb(context->native_handle(), chooseProtocol, nullptr);
    return context;
}

}  // namespace

class HttpServer::Listener {
public:
    explicit Listener(Settings settings)
        : settings_(std::move(settings)),
          tls_(makeTlsContext(settings_.certificate)),
          acceptor_(context_, Tcp::endpoint(asio::ip::make_address(settings_.address), settings_.port)),
          port_(acceptor_.local_endpoint().port()) {}

    ~Listener() { stop(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::uint16_t port() const { return port_; }

    void start(Handler handler) {
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
        {
            const std::lock_guard lock(mutex_);
            for (Connection& connection : connections_) {
                connection.interrupt();
            }
        }
        // Only the joined accepting thread ever changed the list.
        for (Connection& connection : connections_) {
            connection.thread.join();
        }
        connections_.clear();
    }

private:
    struct Connection {
        explicit Connection(Tcp::socket accepted) : socket(std::move(accepted)) {}

        // The system call, not the socket object's own: that one may be in use on the connection's thread.
        void interrupt() {
            if (!finished) {
                ::shutdown(socket.native_handle(), SHUT_RDWR);
            }
        }

        Tcp::socket socket;
        std::thread thread;
        bool finished = false;
    };

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
        settings_.onConnection();
        reap();
        const std::lock_guard lock(mutex_);
        Connection& connection = connections_.emplace_back(std::move(socket));
        try {
            connection.thread = std::thread([this, &connection] { serve(connection); });
        } catch (const std::system_error&) {
            connections_.pop_back();
        }
    }

    void reap() {
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

    void serve(Connection& connection) {
        if (tls_) {
            asio::ssl::stream<Tcp::socket&> stream(connection.socket, *tls_);
            ErrorCode error;
            static_cast<void>(stream.handshake(asio::ssl::stream_base::server, error));
            if (!error) {
                Conversation(stream, handler_, settings_.largestBody).run();
            }
        } else {
            Conversation(connection.socket, handler_, settings_.largestBody).run();
        }
        const std::lock_guard lock(mutex_);
        ErrorCode ignored;
        static_cast<void>(connection.socket.close(ignored));
        connection.finished = true;
    }

    Settings settings_;
    Handler handler_;
    std::unique_ptr<asio::ssl::context> tls_;
    asio::io_context context_{1};
    Tcp::acceptor acceptor_;
    std::uint16_t port_;
    std::thread thread_;
    std::mutex mutex_;
    std::list<Connection> connections_;
};

HttpServer::HttpServer(Settings settings) : listener_(std::make_unique<Listener>(std::move(settings))) {
}

HttpServer::~HttpServer() = default;

std::uint16_t HttpServer::port() const {
    return listener_->port();
}

void HttpServer::start(Handler handler) {
    listener_->start(std::move(handler));
}

void HttpServer::stop() {
    listener_->stop();
}

}  // namespace TarnwickService
