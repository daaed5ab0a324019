#pragma once

#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <Platform/Http/Caching/StoredResponse.hpp>
#include <Platform/Http/Transport.hpp>

#include <memory>

namespace Tarnwick_API::Platform {

/// One request that a cache has to know of, from `CachingTransport::transfer` to its answer.
struct CachedExchange {
    std::shared_ptr<UrlCache> cache;
    /// Not kept alive: it has to go when the session is dropped, to cancel what is under way.
    std::weak_ptr<Transport> next;
    std::shared_ptr<const HttpHeaders> sessionHeaders;
    std::shared_ptr<const HttpRequest> request;
    Transport::OnAnswer onAnswer;
    StopToken stop;
    /// The response that the server is asked to validate, if any.
    std::shared_ptr<const StoredResponse> stored = nullptr;
    WallTime requestTime = {};
};

/// Answers from the cache or by the next transport. May wait for the disk. Thread: the cache's.
void answerOrForward(CachedExchange exchange);

/// Answers by the next transport, and lets the cache know of it, on its thread, which runs already. Thread: any.
void forward(CachedExchange exchange);

}  // namespace Tarnwick_API::Platform
