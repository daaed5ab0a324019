#include <Platform/Http/Transfers/TransferOptions.hpp>

#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

namespace {

bool goesAlong(std::string_view name, const Hop& hop) noexcept {
    const auto is = [name](std::string_view other) { return equalsIgnoringAsciiCase(name, other); };
    if (is("If-None-Match") || is("If-Modified-Since")) {
        // What was asked about one URL's representation concerns no other's. With other methods these guard a change,
        // which is better refused than made unguarded.
        return hop.method != HttpMethod::get && hop.method != HttpMethod::head;
    }
    return !is("Authorization") && (hop.keepsHost || !is("Host")) && (hop.sendsBody || !is("Content-Type"));
}

void fillHeaders(HeaderList& list, const Exchange& exchange) {
    const auto isSent = [&](std::string_view name) {
        // The length is libcurl's to say: one that differs from the body's would split the request in two.
        return !equalsIgnoringAsciiCase(name, "Content-Length") &&
               !equalsIgnoringAsciiCase(name, "Transfer-Encoding") && (!exchange.hop || goesAlong(name, *exchange.hop));
    };
    const auto& own = exchange.request->headers();
    for (const auto& [name, value] : own) {
        if (isSent(name)) {
            list.add(name, value);
        }
    }
    for (const auto& [name, value] : exchange.group->configuration().additionalHeaders) {
        if (isSent(name) && !hasHeader(own, name)) {
            list.add(name, value);
        }
    }
    // No body is so large that waiting for leave to send it would pay.
    list.suppress("Expect");
}

/// libcurl takes a URL apart and puts it together again, letter by letter and more than once, which is slower than all
/// that is done with the request here. So it is told of a query only as part of what it sends as it is. Relative
/// redirects don't depend on the query, but plain HTTP by a proxy needs the whole URL.
void setUrl(OptionSetter& set, const Url& url) {
    const auto& whole = url.absoluteString();
    const auto path = whole.find('/', whole.find("//") + 2);
    const auto query = whole.find('?');
    const auto end = std::min(whole.find('#'), whole.size());
    if (path < query && query < end - 1 && equalsIgnoringAsciiCase(url.scheme(), "https")) {
        set(CURLOPT_URL, whole.substr(0, query).c_str());
        set(CURLOPT_REQUEST_TARGET, whole.substr(path, end - path).c_str());
    } else {
        set(CURLOPT_URL, whole.c_str());
    }
}

void setMessage(OptionSetter& set, const Exchange& exchange, HeaderList& headers) {
    const auto method = exchange.method();
    const auto* const body = exchange.body();
    setUrl(set, exchange.url());
    if (method == HttpMethod::head) {
        set(CURLOPT_NOBODY, 1L);
    }
    if (body != nullptr) {
        // The size first, as the body may hold NUL. The body is not copied.
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body->size()));
        set(CURLOPT_POSTFIELDS, body->data());
    }
    const auto usual = body != nullptr ? HttpMethod::post : HttpMethod::get;
    if (method != usual) {
        set(CURLOPT_CUSTOMREQUEST, name(method).data());
    }
    fillHeaders(headers, exchange);
    set(CURLOPT_HTTPHEADER, headers.get());
    // What the header says stays the session's choice.
    set(CURLOPT_ACCEPT_ENCODING, "gzip");
}

/// The file that libcurl was built to read them from; null for none.
const char* systemRoots() noexcept {
    // To be told libcurl's version costs more than all options together.
    static const char* const file = curl_version_info(CURLVERSION_NOW)->cainfo;
    return file;
}

void setTrust(OptionSetter& set, const Exchange& exchange) {
    const auto& group = *exchange.group;
    const auto& ownRoots = group.configuration().trustedRootsFile;
    const char* const roots = ownRoots ? ownRoots->c_str() : systemRoots();
    if (roots != nullptr) {
        // With a directory set besides the file, libcurl would read all certificates anew for each connection.
        set(CURLOPT_CAINFO, roots);
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
    constexpr long nameMustMatch = 2;
    const bool checksName = group.hostValidation(exchange.url().host()) == HostValidation::full;
    set(CURLOPT_SSL_VERIFYHOST, checksName ? nameMustMatch : 0L);
    if (const auto* const keys = group.pinnedPublicKeys(exchange.url().host())) {
        set(CURLOPT_PINNEDPUBLICKEY, keys->c_str());
    }
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
}

/// Rounded up, and within what libcurl takes; it means "no limit" by 0.
long curlMilliseconds(std::chrono::microseconds time) {
    const auto count = std::chrono::ceil<std::chrono::milliseconds>(time).count();
    return static_cast<long>(std::clamp<std::int64_t>(count, 1, std::numeric_limits<int>::max()));
}

void setConnection(OptionSetter& set, const Exchange& exchange) {
    const auto& group = *exchange.group;
    const auto& configuration = group.configuration();
    const char* const schemes = configuration.allowsPlainHttp ? "http,https" : "https";
    set(CURLOPT_PROTOCOLS_STR, schemes);
    // A cancelled look-up of a name must not hold up the thread until the resolver gives up.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    // Wait for the first connection to tell whether it takes many requests, before opening another. Without TLS it
    // would tell only with its first answer, and takes one at a time.
    set(CURLOPT_PIPEWAIT, equalsIgnoringAsciiCase(exchange.url().scheme(), "https") ? 1L : 0L);
    if (group.connectTo() != nullptr) {
        set(CURLOPT_CONNECT_TO, group.connectTo());
    }
    if (!configuration.usesProxy) {
        set(CURLOPT_PROXY, "");
    }
    const auto spent = exchange.hop ? exchange.hop->spent : std::chrono::microseconds{0};
    const auto left = curlMilliseconds(configuration.wholeTimeout - spent);
    set(CURLOPT_TIMEOUT_MS, left);
    // An address that does not answer gets half of what is left, the last one all of it: so every one gets its turn
    // before the idle time-out, and what answers at last has some time to do so.
    set(CURLOPT_CONNECTTIMEOUT_MS, std::min(left, curlMilliseconds(configuration.idleTimeout * 3 / 4)));
    if (exchange.needsOwnConnection) {
        set(CURLOPT_FRESH_CONNECT, 1L);
        set(CURLOPT_FORBID_REUSE, 1L);
    }
}

}  // namespace

void setCommonOptions(OptionSetter& set) {
    set(CURLOPT_PATH_AS_IS, 1L);
    // Decoding is not libcurl's.
    set(CURLOPT_HTTP_CONTENT_DECODING, 0L);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
}

void setTransferOptions(OptionSetter& set, const Exchange& exchange, HeaderList& headers) {
    setMessage(set, exchange, headers);
    setTrust(set, exchange);
    setConnection(set, exchange);
}

}  // namespace Tarnwick_API::Platform
