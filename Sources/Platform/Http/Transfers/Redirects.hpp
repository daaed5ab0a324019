#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// How a request goes on after a redirect. "Authorization" never goes along, nor do the validators of a GET.
struct Hop {
    Url url;
    HttpMethod method;
    bool sendsBody;
    /// Whether host and port are still those of the request's own URL, which a "Host" header of the request was meant
    /// for.
    bool keepsHost;
    /// Redirects followed so far, this one included.
    int number;
    /// Time taken by the hops before.
    std::chrono::microseconds spent{0};
};

constexpr int maximumRedirects = 20;

/// `location` as a whole URL if it names only a part of the document at `url`, else none. libcurl loses the path.
[[nodiscard]] std::optional<std::string> withinDocument(const Url& url, std::string_view location);

/// Where an answer with `status` and the resolved `Location` leads: 303 becomes a GET, as does a POST on 301 and 302;
/// everything else keeps method and body. None when the status is no redirect or the location is no whole URL.
/// `current` is the hop that got the answer, or null when it was the request itself.
[[nodiscard]] std::unique_ptr<Hop> nextHop(const HttpRequest& request, const Hop* current, std::int64_t status,
                                           std::string_view location);

}  // namespace Tarnwick_API::Platform
