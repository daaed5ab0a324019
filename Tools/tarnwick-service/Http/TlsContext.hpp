#pragma once

#include "Certificates/Certificates.hpp"

#include <memory>

#include <boost/asio/ssl/context.hpp>

namespace TarnwickService {

/// For a server that shows this certificate. Throws std::system_error when the certificate cannot be used.
std::unique_ptr<boost::asio::ssl::context> makeTlsContext(const Certificate& certificate);

}  // namespace TarnwickService
