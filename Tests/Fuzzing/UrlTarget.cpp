// A URL leads to the host that libcurl goes to, and keeps that whatever is appended.

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <Calls/BaseUrlFault.hpp>
#include <Platform/Cache/CacheKey.hpp>
#include <Platform/Text/AsciiText.hpp>

#include "FuzzTarget.hpp"

#include <memory>

#include <curl/curl.h>

using namespace Tarnwick_API::Platform;

void compareWithTransfer(const Url& url) {
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> read{curl_url(), &curl_url_cleanup};
    char* host = nullptr;
    // What libcurl rewrites is not compared: addresses, and what is percent-encoded.
    if (curl_url_set(read.get(), CURLUPART_URL, url.absoluteString().c_str(), 0) == CURLUE_OK &&
        url.host().find_first_not_of("0123456789abcdefABCDEFxX.:") != std::string_view::npos &&
        url.host().find('%') == std::string_view::npos &&
        curl_url_get(read.get(), CURLUPART_HOST, &host, 0) == CURLUE_OK) {
        require(equalsIgnoringAsciiCase(host, url.host()), "the host is the one that libcurl goes to");
        curl_free(host);
    }
}

void fuzz(FuzzInput input) {
    const auto text = input.text();
    const auto component = input.text();
    const auto base = "https://" + text + "/vb";
    require(Tarnwick_API::baseUrlFault(base) || Url::fromString(base).value().absoluteString() == base,
            "a base is a URL");
    const auto url = Url::fromString(text);
    if (!url || url->host().empty()) {
        return;
    }
    compareWithTransfer(*url);
    const HttpRequest request{HttpMethod::get, *url, {{"key", component}}, ParameterEncoding::url, {}};
    for (const auto& longer : {url->appendingPathComponent(component), request.url()}) {
        for (const auto& each : {longer, Url::fromString(longer.absoluteString()).value()}) {
            require(each.scheme() == url->scheme() && each.host() == url->host() && each.port() == url->port(),
                    "what is appended leaves the origin");
        }
    }
    const auto key = cacheKey(request);
    const HttpRequest again{HttpMethod::get, Url::fromString(key.substr(4)).value(), {}, ParameterEncoding::url, {}};
    require(cacheKey(again) == key, "the key of a key is the key");
}
