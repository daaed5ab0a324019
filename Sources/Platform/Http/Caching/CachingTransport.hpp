#pragma once

#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <Platform/Http/Transport.hpp>

#include <memory>

namespace Tarnwick_API::Platform {

/// Puts a private cache (RFC 9111) before another transport: answers from stored responses, has stale ones validated,
/// stores responses and gives up what unsafe requests invalidate, on the cache's thread. Requests without a cache, and
/// those that no cache has to know of, go straight on.
class CachingTransport final : public Transport {
public:
    /// `next` is dropped with this, whatever is under way. `cache`: none for the installed one, if any, at each
    /// request. `sessionHeaders` are those that `next` adds to a request.
    CachingTransport(std::shared_ptr<Transport> next, std::shared_ptr<UrlCache> cache,
                     std::shared_ptr<const HttpHeaders> sessionHeaders);

    void transfer(std::shared_ptr<const HttpRequest> request, OnAnswer onAnswer, StopToken stop) override;
    void networkChanged() override { next_->networkChanged(); }

private:
    std::shared_ptr<Transport> next_;
    std::shared_ptr<UrlCache> cache_;
    std::shared_ptr<const HttpHeaders> sessionHeaders_;
};

}  // namespace Tarnwick_API::Platform
