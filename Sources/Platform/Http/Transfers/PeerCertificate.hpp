#pragma once

#include <string>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// Whether the certificate at the other end of the connection that `handle` has names `host`: a name, or an address, of
/// which libcurl compares the URL's alone. No for a connection without TLS, and where libcurl's TLS library is another
/// than ours, as its objects then are. Thread: the one that runs `handle`.
[[nodiscard]] bool peerCertificateNames(CURL* handle, const std::string& host) noexcept;

}  // namespace Tarnwick_API::Platform
