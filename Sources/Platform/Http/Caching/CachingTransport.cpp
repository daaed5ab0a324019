#include <Platform/Http/Caching/CachingTransport.hpp>

#include <Platform/Http/Caching/CacheThread.hpp>
#include <Platform/Http/Caching/CachedExchange.hpp>
#include <Platform/Http/Caching/CachingRules.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <exception>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

/// None when it can't be started.
CacheThread* startedThread() {
    try {
        return &CacheThread::shared();
    } catch (const std::exception& error) {
        if (DebugChannel::isOpen()) {
            DebugChannel::write(std::string{"The cache is not used: "}.append(error.what()), "transfer");
        }
        return nullptr;
    }
}

}  // namespace

CachingTransport::CachingTransport(std::shared_ptr<Transport> next, std::shared_ptr<UrlCache> cache,
                                   std::shared_ptr<const HttpHeaders> sessionHeaders)
    : next_{std::move(next)}, cache_{std::move(cache)}, sessionHeaders_{std::move(sessionHeaders)} {
}

void CachingTransport::transfer(std::shared_ptr<const HttpRequest> request, OnAnswer onAnswer, StopToken stop) {
    auto cache = cache_ ? cache_ : UrlCache::installed();
    const bool mayBeAnswered = cache && mayUseCache(*request, {*request, *sessionHeaders_});
    const bool mayInvalidate = cache && !isSafe(request->method());
    auto* const thread = mayBeAnswered || mayInvalidate ? startedThread() : nullptr;
    if (thread == nullptr) {
        next_->transfer(std::move(request), std::move(onAnswer), std::move(stop));
        return;
    }
    CachedExchange exchange{std::move(cache),    next_,          sessionHeaders_, std::move(request),
                            std::move(onAnswer), std::move(stop)};
    if (mayBeAnswered) {
        thread->push([exchange = std::move(exchange)]() mutable { answerOrForward(std::move(exchange)); });
    } else {
        forward(std::move(exchange));
    }
}

}  // namespace Tarnwick_API::Platform
