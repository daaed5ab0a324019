#pragma once

#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Caching/CacheControl.hpp>
#include <Platform/Http/Caching/RequestFields.hpp>

#include <chrono>
#include <memory>
#include <optional>

namespace Tarnwick_API::Platform {

/// When an exchange with a server began and when its answer came.
struct ExchangeTimes {
    WallTime request;
    WallTime response;
};

/// What the request itself says of caches.
[[nodiscard]] CacheControl requestControl(const RequestFields& fields);

/// Whether a cache may answer the request, and keep what comes in answer to it.
[[nodiscard]] bool mayUseCache(const HttpRequest& request, const RequestFields& fields);

/// Whether an answer to such a request may be kept.
[[nodiscard]] bool mayBeStored(const HttpResponse& response);

/// What a cache gave for a request, judged as RFC 9111 has it for a private cache without heuristics.
class StoredAnswer {
public:
    /// None when this layer has not stored it, or not for a request with these fields.
    [[nodiscard]] static std::optional<StoredAnswer> read(std::shared_ptr<const CachedUrlResponse> record,
                                                          const RequestFields& fields);

    /// A record of an answer, for a cache.
    [[nodiscard]] static std::shared_ptr<const CachedUrlResponse> record(HttpResponse response,
                                                                         std::shared_ptr<const Bytes> body,
                                                                         const RequestFields& fields,
                                                                         const ExchangeTimes& times);

    [[nodiscard]] std::chrono::seconds age(WallTime now) const;

    /// Whether it may be given without asking the server.
    [[nodiscard]] bool isFresh(WallTime now, const CacheControl& request) const;

    /// `request` with what asks the server whether this answer still holds; null when there is nothing to ask with.
    [[nodiscard]] std::shared_ptr<const HttpRequest> conditional(const HttpRequest& request) const;

    /// The answer's head after the server confirmed it with `confirmation`, an answer 304; none when that confirms
    /// another answer.
    [[nodiscard]] std::optional<HttpResponse> confirmedBy(const HttpResponse& confirmation) const;

    [[nodiscard]] const HttpResponse& response() const noexcept { return record_->response; }
    [[nodiscard]] const std::shared_ptr<const Bytes>& body() const noexcept { return record_->body; }

private:
    StoredAnswer(std::shared_ptr<const CachedUrlResponse> record, ExchangeTimes times)
        : record_{std::move(record)}, times_{times} {}

    std::shared_ptr<const CachedUrlResponse> record_;
    ExchangeTimes times_;
};

}  // namespace Tarnwick_API::Platform
