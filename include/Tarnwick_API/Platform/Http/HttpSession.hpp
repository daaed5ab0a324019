#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API::Platform {

class UrlCache;

/// Why an exchange did not come to a whole answer.
struct HttpError {
    enum class Kind {
        encoding,          ///< the request could not be built; nothing was sent
        unresolvedHost,    ///< the name has no address
        cannotConnect,     ///< refused, or no route
        timedOut,          ///< no new data for the idle time-out
        connectionLost,    ///< closed before the answer was whole
        certificate,       ///< the server's certificate was refused
        tls,               ///< any other TLS failure
        badAnswer,         ///< not HTTP, or damaged coding or framing
        tooLarge,          ///< head or body pass the session's limit
        tooManyRedirects,  ///< more than 20
        cancelled,         ///< the session was dropped, or the request stopped
        other,
    };
    Kind kind = Kind::other;
    /// For developers; English; holds no header or body.
    std::string description;
};

/// As it is written above, such as "certificate".
[[nodiscard]] TARNWICK_API_EXPORT const char* name(HttpError::Kind kind) noexcept;

/// The head of an answer.
struct HttpResponse {
    std::int64_t status = 0;
    /// Names in lower case; the values of a repeated header joined by ", ".
    HttpHeaders headers;
};

/// The outcome of one request. A session may leave out any of it; the sessions of `makeHttpSession` always hand on a
/// request and a body (empty if need be), and with no error a response.
struct HttpAnswer {
    std::shared_ptr<const HttpRequest> request;
    /// Look at this first: a body cut short has a response with status 200, and an error.
    std::optional<HttpError> error;
    std::optional<HttpResponse> response;
    std::optional<Bytes> body;
    /// Where the answer came from.
    enum class Source {
        network,
        cache,        ///< a stored answer that was still fresh; nothing was sent
        revalidated,  ///< a stored answer that the server confirmed
    };
    Source source = Source::network;
};

/// Decides, without waiting, resolving a name or sending anything, whether a try makes sense.
class TARNWICK_API_EXPORT Reachability {
public:
    Reachability() = default;
    Reachability(const Reachability&) = delete;
    Reachability& operator=(const Reachability&) = delete;
    virtual ~Reachability() = default;
    /// Whether the target of `urlText` may be reached. Thread: any.
    [[nodiscard]] virtual bool isReachable(std::string_view urlText) const = 0;
};

/// Loopback is always reachable; an address when the kernel has a route to it; a name when it has one to the
/// internet at large; the empty text never.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<const Reachability> makeRouteReachability();

/// Sends requests and delivers their answers. Abstract so that tests and hosts can put their own in its place.
class TARNWICK_API_EXPORT HttpSession {
public:
    /// Whom to tell the answer.
    using Completion = std::function<void(HttpAnswer)>;

    HttpSession() = default;
    HttpSession(const HttpSession&) = delete;
    HttpSession& operator=(const HttpSession&) = delete;
    virtual ~HttpSession() = default;

    /// Headers that every request gets unless it has its own of that name.
    [[nodiscard]] virtual const HttpHeaders& defaultHeaders() const = 0;

    /// Whether a try makes sense: see `Reachability`.
    [[nodiscard]] virtual bool isReachable(std::string_view urlText) const = 0;

    /// Starts `request` and returns at once. `onCompletion` is called once, on the main queue that is installed now,
    /// never from inside this call. The same request may be sent again, and several times at once. Thread: any.
    virtual void send(std::shared_ptr<const HttpRequest> request, Completion onCompletion) = 0;

    /// Tells that packets now take another way: a tunnel has come up or gone down, another network is in use. A host
    /// calls it at once, for one session; it holds for all sessions of `makeHttpSession`. No connection of before takes
    /// a further request. Requests under way keep theirs; those that stay silent for
    /// `HttpSessionConfiguration::graceAfterNetworkChange` from now, and at once those whose connection the system no
    /// longer has a way for, end with `HttpError::Kind::connectionLost`, so that their next attempt gets a new
    /// connection. Returns at once. Thread: any.
    ///
    /// On Linux those sessions notice by themselves what the system's routes and addresses tell; they then end idle
    /// connections and those without a way, and give no others up. What shows in no route (a tunnel by policies, a
    /// filter), and every change elsewhere, they learn of by this call alone. A host's own session need do nothing.
    virtual void networkChanged() {}

    /// As `send`, but gives the request up when `stop` stops; `onCompletion` then gets `HttpError::Kind::cancelled`. A
    /// session that can't leaves this as it is. Thread: any.
    virtual void sendStoppable(std::shared_ptr<const HttpRequest> request, Completion onCompletion,
                               const StopToken& /*stop*/) {
        send(std::move(request), std::move(onCompletion));
    }
};

/// "Accept-Encoding", "Accept-Language" (from the user's locale) and "User-Agent" (from the main bundle).
[[nodiscard]] TARNWICK_API_EXPORT HttpHeaders defaultHttpHeaders();

/// Which checks a server's certificate must pass.
enum class HostValidation {
    full,       ///< chain and host name
    chainOnly,  ///< everything but the host name
    /// The chain, and that the certificate names the host of the request's "Host" header instead of the URL's: for an
    /// address that stands in for a name. Looked at before each request goes out. Needs a libcurl that is built with
    /// OpenSSL 3; with any other every certificate is refused.
    hostHeader,
};

/// How a session behaves. The defaults are those of a session for a desktop application.
struct HttpSessionConfiguration {
    /// Added to every request that has no header of the same name. "Accept-Encoding" should name no other coding than
    /// gzip and deflate: a body with another is a bad answer.
    HttpHeaders additionalHeaders = defaultHttpHeaders();
    /// Checks by exact host of the URL; others get `HostValidation::full`.
    std::map<std::string, HostValidation, std::less<>> trustPolicies;
    /// By exact host of the URL: the public keys of which the certificate must have one, beside what the policy checks.
    /// Each is "sha256//" and the base64 form of the SHA-256 digest of the key's DER form; several are separated by
    /// ";". Keep a second one ready: a service that has lost its key reaches no application that knows no other.
    std::map<std::string, std::string, std::less<>> pinnedPublicKeys;
    /// A file of PEM certificates to trust in place of the system's.
    std::optional<std::string> trustedRootsFile;
    /// Ends an exchange during which no byte of a body has come or gone, and no head has come whole, for this long;
    /// connecting included, which gets three quarters of it: half of what is left for each of a host's addresses in
    /// turn, all of it for the last.
    std::chrono::milliseconds idleTimeout = std::chrono::seconds{60};
    /// Ends an exchange that takes longer in all.
    std::chrono::seconds wholeTimeout = std::chrono::hours{24 * 7};
    /// How long a request under way may stay silent after `HttpSession::networkChanged`. With the pause before its next
    /// attempt, a good answer can so be there within two seconds.
    std::chrono::milliseconds graceAfterNetworkChange{700};
    /// The largest head taken, in bytes: that of the answer, those of interim answers before it, and the trailers.
    std::size_t maximumHeadSize = std::size_t{1024} * 1024;
    /// The largest body taken, in bytes after decompression.
    std::size_t maximumBodySize = std::size_t{256} * 1024 * 1024;
    /// Connections at once to one host and port, and requests at once there over HTTP/2. All of these share one
    /// connection where the server takes so many.
    std::size_t connectionsPerHost = 6;
    std::size_t streamsPerConnection = 100;
    /// Leads connections elsewhere, as "host:port:other host:other port", in ASCII; URL, "Host" and certificate checks
    /// stay, and the other place decides what is reachable. For development against a local service.
    std::vector<std::string> connectTo;
    /// Heed the environment's proxy variables.
    bool usesProxy = true;
    /// Allow plain "http" URLs. For tests.
    bool allowsPlainHttp = false;
    /// Where answers to GET are kept and looked up, by the rules for a private HTTP cache; an answer is used again only
    /// for a request with the same "Authorization". None: the cache given to `UrlCache::setShared`, if any.
    std::shared_ptr<UrlCache> cache;
    /// Default: `makeRouteReachability()`.
    std::shared_ptr<const Reachability> reachability;
};

/// A session on the process's one I/O thread, which is started with the first request and stopped at exit of the
/// process. Cookies are neither kept nor sent; redirects are followed without "Authorization", and a GET without
/// "If-None-Match" and "If-Modified-Since". Dropping the session ends its requests with `HttpError::Kind::cancelled`.
/// Requests still under way when the process exits, or started then, are abandoned: their completions are not called.
/// A child of `fork` has not its parent's thread: once the parent has sent a request, by any session, each request of
/// the child fails at once with `HttpError::Kind::other`, on the child's main queue; those under way at the fork are
/// the parent's. A child forked before the first request, or one that executes a program, is a process like any other.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<HttpSession> makeHttpSession(HttpSessionConfiguration configuration);

}  // namespace Tarnwick_API::Platform
