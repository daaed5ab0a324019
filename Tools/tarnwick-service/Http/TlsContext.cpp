#include "Http/TlsContext.hpp"

#include <array>

#include <boost/asio/buffer.hpp>

namespace TarnwickService {
namespace {

namespace asio = boost::asio;

// Clients that offer HTTP/2 must be told that it is not spoken here, else some of them assume that it is.
int chooseProtocol(SSL* /*connection*/, const unsigned char** chosen, unsigned char* chosenLength,
                   const unsigned char* offered, unsigned int offeredLength, void* /*unused*/) {
    static constexpr std::array<unsigned char, 9> http11{8, 'h', 't', 't', 'p', '/', '1', '.', '1'};
    unsigned char* out = nullptr;
    const int result = SSL_select_next_proto(&out, chosenLength, http11.data(), http11.size(), offered, offeredLength);
    *chosen = out;
    return result == OPENSSL_NPN_NEGOTIATED ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_NOACK;
}

}  // namespace

std::unique_ptr<asio::ssl::context> makeTlsContext(const Certificate& certificate) {
    auto context = std::make_unique<asio::ssl::context>(asio::ssl::context::tls_server);
    context->set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 |
                         asio::ssl::context::no_tlsv1_1);
    context->use_certificate_chain(asio::buffer(certificate.certificatePem));
    context->use_private_key(asio::buffer(certificate.privateKeyPem), asio::ssl::context::pem);
    SSL_CTX_set_alpn_select_cb(context->native_handle(), chooseProtocol, nullptr);
    return context;
}

}  // namespace TarnwickService
