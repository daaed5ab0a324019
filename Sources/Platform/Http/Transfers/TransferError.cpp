#include <Platform/Http/Transfers/TransferError.hpp>

#include <string>
#include <system_error>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

/// Whether the system had a part in the end, so that its last error belongs there: libcurl never clears that.
bool isOfTheSystem(CURLcode code) noexcept {
    return code == CURLE_COULDNT_CONNECT || code == CURLE_SSL_CONNECT_ERROR || code == CURLE_SEND_ERROR ||
           code == CURLE_RECV_ERROR;
}

HttpError::Kind errorKind(CURLcode code, std::string_view message) noexcept {
    using Kind = HttpError::Kind;
    switch (code) {
        // The scheme was checked before: libcurl speaks of an answer in a protocol that it takes for HTTP/0.9.
        case CURLE_UNSUPPORTED_PROTOCOL:
            return Kind::badAnswer;
        case CURLE_URL_MALFORMAT:
            return Kind::encoding;
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_COULDNT_RESOLVE_HOST:
            return Kind::unresolvedHost;
        case CURLE_COULDNT_CONNECT:
            return Kind::cannotConnect;
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_HTTP2:
            return Kind::badAnswer;
        case CURLE_PARTIAL_FILE:
            return Kind::connectionLost;
        case CURLE_OPERATION_TIMEDOUT:
            return Kind::timedOut;
        case CURLE_SSL_CONNECT_ERROR:
            return Kind::tls;
        // How a head shows whose first line is a continuation.
        case CURLE_BAD_FUNCTION_ARGUMENT:
            return Kind::badAnswer;
        case CURLE_TOO_MANY_REDIRECTS:
            return Kind::tooManyRedirects;
        case CURLE_GOT_NOTHING:
            return Kind::connectionLost;
        case CURLE_SSL_ENGINE_NOTFOUND:
        case CURLE_SSL_ENGINE_SETFAILED:
            return Kind::tls;
        case CURLE_SEND_ERROR:
            return Kind::connectionLost;
        // Nothing but its message tells malformed chunks from a connection that broke.
        case CURLE_RECV_ERROR:
            return message.find("chunk") == std::string_view::npos ? Kind::connectionLost : Kind::badAnswer;
        // What this end refused has a reason of its own.
        case CURLE_WRITE_ERROR:
            return Kind::badAnswer;
        case CURLE_SSL_CERTPROBLEM:
        case CURLE_SSL_CIPHER:
            return Kind::tls;
        case CURLE_PEER_FAILED_VERIFICATION:
            return Kind::certificate;
        case CURLE_BAD_CONTENT_ENCODING:
            return Kind::badAnswer;
        case CURLE_FILESIZE_EXCEEDED:
            return Kind::tooLarge;
        case CURLE_USE_SSL_FAILED:
            return Kind::tls;
        case CURLE_SEND_FAIL_REWIND:
            return Kind::connectionLost;
        case CURLE_SSL_ENGINE_INITFAILED:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_SHUTDOWN_FAILED:
        case CURLE_SSL_CRL_BADFILE:
            return Kind::tls;
        case CURLE_SSL_ISSUER_ERROR:
            return Kind::certificate;
        case CURLE_NO_CONNECTION_AVAILABLE:
            return Kind::cannotConnect;
        case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
        case CURLE_SSL_INVALIDCERTSTATUS:
            return Kind::certificate;
        // How an HTTP/2 server that goes away in the middle of an answer shows.
        case CURLE_HTTP2_STREAM:
            return Kind::connectionLost;
        case CURLE_PROXY:
            return Kind::cannotConnect;
        case CURLE_SSL_CLIENTCERT:
            return Kind::tls;
        // Codes of other protocols, faults of this program, and what later versions of libcurl add.
        default:
            return Kind::other;
    }
}

}  // namespace

HttpError transferError(CURL* handle, CURLcode code, std::string_view message) {
    std::string description = curl_easy_strerror(code);
    description += " (" + std::to_string(code);
    long systemError = 0;
    if (isOfTheSystem(code) && curl_easy_getinfo(handle, CURLINFO_OS_ERRNO, &systemError) == CURLE_OK &&
        systemError != 0) {
        description += "; " + std::system_category().message(static_cast<int>(systemError));
    }
    long verification = 0;
    if (code == CURLE_PEER_FAILED_VERIFICATION &&
        curl_easy_getinfo(handle, CURLINFO_SSL_VERIFYRESULT, &verification) == CURLE_OK) {
        description += "; verification result " + std::to_string(verification);
    }
    description += ")";
    return {errorKind(code, message), std::move(description)};
}

HttpError optionError(CURLoption option, CURLcode code) {
    const auto* const known = curl_easy_option_by_id(option);
    std::string description = "libcurl's option ";
    description += known != nullptr ? known->name : std::to_string(option);
    description.append(" can't be set: ").append(curl_easy_strerror(code));
    description += " (" + std::to_string(code) + ")";
    return {HttpError::Kind::other, std::move(description)};
}

}  // namespace Tarnwick_API::Platform
