#pragma once

#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Caching/CacheControl.hpp>
#include <Platform/Http/Caching/Freshness.hpp>
#include <Platform/Http/Caching/RequestFields.hpp>

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

namespace Tarnwick_API::Platform {

/// What a cache gave for a request, judged as RFC 9111 has it for a private cache without heuristics.
class StoredResponse {
public:
    /// None when this layer has not stored the entry, or for a request with another secondary key.
    [[nodiscard]] static std::optional<StoredResponse> read(std::shared_ptr<const CachedUrlResponse> entry,
                                                            const RequestFields& fields);

    /// A response as an entry for a cache.
    [[nodiscard]] static std::shared_ptr<const CachedUrlResponse> entry(HttpResponse response,
                                                                        std::shared_ptr<const Bytes> body,
                                                                        const RequestFields& fields,
                                                                        const ExchangeTimes& times);

    [[nodiscard]] std::chrono::seconds currentAge(WallTime now) const;

    /// Whether it may answer a request with these directives without validation.
    [[nodiscard]] bool isFresh(WallTime now, const CacheControl& requestDirectives) const;

    /// `request` made conditional, to have the server validate this response; null when there is no validator.
    [[nodiscard]] std::shared_ptr<const HttpRequest> validationRequest(const HttpRequest& request) const;

    /// The response's head, freshened by `validation`, a response 304; none when that is about another response.
    [[nodiscard]] std::optional<HttpResponse> freshenedBy(const HttpResponse& validation) const;

    [[nodiscard]] const HttpResponse& response() const noexcept { return entry_->response; }
    [[nodiscard]] const std::shared_ptr<const Bytes>& body() const noexcept { return entry_->body; }

private:
    StoredResponse(std::shared_ptr<const CachedUrlResponse> entry, ExchangeTimes times)
        : entry_{std::move(entry)}, times_{times} {}

    std::shared_ptr<const CachedUrlResponse> entry_;
    ExchangeTimes times_;
};

}  // namespace Tarnwick_API::Platform
