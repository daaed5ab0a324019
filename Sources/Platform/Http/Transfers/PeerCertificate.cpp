#include <Platform/Http/Transfers/PeerCertificate.hpp>

#include <memory>
#include <string_view>

#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace Tarnwick_API::Platform {

namespace {

bool usesOurTlsLibrary() noexcept {
    const auto* const name = curl_version_info(CURLVERSION_NOW)->ssl_version;
    return name != nullptr && std::string_view{name}.starts_with("OpenSSL/3.");
}

SSL* tlsOf(CURL* handle) noexcept {
    curl_tlssessioninfo* session = nullptr;
    if (!usesOurTlsLibrary() || curl_easy_getinfo(handle, CURLINFO_TLS_SSL_PTR, &session) != CURLE_OK ||
        session == nullptr || session->backend != CURLSSLBACKEND_OPENSSL) {
        return nullptr;
    }
    return static_cast<SSL*>(session->internals);
}

}  // namespace

bool peerCertificateNames(CURL* handle, const std::string& host) noexcept {
    auto* const tls = tlsOf(handle);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate{
        tls == nullptr ? nullptr : SSL_get1_peer_certificate(tls), &X509_free};
    // What a certificate says outside of its list of names is for people.
    constexpr unsigned flags = X509_CHECK_FLAG_NEVER_CHECK_SUBJECT | X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS;
    if (!certificate) {
        return false;
    }
    // An address is named as one alone: its digits fit a host's name too, and "*.0.113.7".
    constexpr int isNoAddress = -2;
    const int named = X509_check_ip_asc(certificate.get(), host.c_str(), flags);
    return (named == isNoAddress ? X509_check_host(certificate.get(), host.data(), host.size(), flags, nullptr)
                                 : named) == 1;
}

}  // namespace Tarnwick_API::Platform
