#include "Http/Conversation.hpp"

#include "Http/AnswerEncoder.hpp"

#include <array>

#include <boost/asio/buffer.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>

namespace TarnwickService {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using Tcp = asio::ip::tcp;
using ErrorCode = boost::system::error_code;

std::string_view toView(boost::beast::string_view text) {
    return {text.data(), text.size()};
}

// Whether something came that is no request, rather than nothing more.
bool isMalformed(ErrorCode error) {
    static const auto& malformed = http::make_error_code(http::error::bad_method).category();
    return error != http::error::end_of_stream && error.category() == malformed;
}

template <typename Stream>
class Conversation {
public:
    Conversation(Stream& stream, const RequestHandler& handler, std::size_t largestBody)
        : stream_(stream), handler_(handler), largestBody_(largestBody) {}

    Ending run() {
        bool open = true;
        while (open) {
            open = exchange();
        }
        return ending_;
    }

private:
    bool exchange() {
        http::request_parser<http::string_body> parser;
        parser.body_limit(largestBody_);
        ErrorCode error;
        http::read(stream_, buffer_, parser, error);
        if (isMalformed(error)) {
            return write(plainText(error == http::error::body_limit ? 413 : 400, error.message()), false);
        }
        if (error) {
            return false;
        }
        const auto& message = parser.get();
        readRequest(message);
        return write(answer(), message.keep_alive());
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

    Answer answer() const {
        try {
            return handler_(request_);
        } catch (const Refusal& refusal) {
            return plainText(refusal.status(), refusal.what());
        } catch (const std::exception& failure) {
            return plainText(500, failure.what());
        }
    }

    bool write(const Answer& answer, bool keepAlive) {
        const AnswerEncoder::Message message = encoder_.encode(answer, keepAlive);
        ErrorCode error;
        for (const std::string_view part : {message.start, message.rest, message.leftover}) {
            if (!error && !part.empty()) {
                asio::write(stream_, asio::buffer(part), error);
            }
        }
        ending_ = answer.damage.ending;
        return !error && message.keepAlive;
    }

    Stream& stream_;
    const RequestHandler& handler_;
    std::size_t largestBody_;
    boost::beast::flat_buffer buffer_;
    Request request_;
    AnswerEncoder encoder_;
    Ending ending_ = Ending::closed;
};

/// False when the client has gone.
bool hears(Tcp::socket& socket) {
    std::array<char, 4096> unheeded{};
    ErrorCode error;
    socket.read_some(asio::buffer(unheeded), error);
    return !error;
}

/// Closing the socket then ends the connection as it should.
void leave(Tcp::socket& socket, Ending ending) {
    ErrorCode ignored;
    if (ending == Ending::reset) {
        static_cast<void>(socket.set_option(asio::socket_base::linger(true, 0), ignored));
    }
    while (ending == Ending::silent && hears(socket)) {
    }
}

}  // namespace

void converse(Tcp::socket& socket, asio::ssl::context* tls, const RequestHandler& handler, std::size_t largestBody) {
    if (tls == nullptr) {
        leave(socket, Conversation(socket, handler, largestBody).run());
        return;
    }
    asio::ssl::stream<Tcp::socket&> stream(socket, *tls);
    ErrorCode error;
    static_cast<void>(stream.handshake(asio::ssl::stream_base::server, error));
    if (!error) {
        leave(socket, Conversation(stream, handler, largestBody).run());
    }
}

void leaveUnanswered(Tcp::socket& socket, Ending ending) {
    hears(socket);
    leave(socket, ending);
}

}  // namespace TarnwickService
