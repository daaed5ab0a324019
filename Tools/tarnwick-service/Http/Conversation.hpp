#pragma once

#include "Http/Exchange.hpp"

#include <cstddef>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>

namespace TarnwickService {

/// Answers the requests that come in on a connection, one after the other, until either side ends it. Over TLS with a
/// `tls`. A request with a larger body is refused.
void converse(boost::asio::ip::tcp::socket& socket, boost::asio::ssl::context* tls, const RequestHandler& handler,
              std::size_t largestBody);

/// Takes the client's first words without an answer; closing the socket then ends the connection so.
void leaveUnanswered(boost::asio::ip::tcp::socket& socket, Ending ending);

}  // namespace TarnwickService
