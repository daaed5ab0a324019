#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Http/Caching/CacheThread.hpp>
#include <Platform/Http/Caching/CacheUse.hpp>
#include <Platform/Http/Caching/CachedExchange.hpp>
#include <Platform/Http/Caching/StoredResponse.hpp>
#include <Platform/Http/Transfers/IoThread.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <exception>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::int64_t notModified = 304;
constexpr std::int64_t firstSuccess = 200;
constexpr std::int64_t firstFailure = 400;

RequestFields fieldsOf(const Exchange& exchange) {
    return {*exchange.request, exchange.session->configuration().additionalHeaders};
}

bool mayChangeState(HttpMethod method) {
    return method != HttpMethod::get && method != HttpMethod::head && method != HttpMethod::options &&
           method != HttpMethod::trace;
}

HttpAnswer answerFrom(HttpResponse response, const Bytes& body, HttpAnswer::Source source) {
    HttpAnswer answer;
    answer.response = std::move(response);
    answer.body.emplace();
    // As from the network: with room in which a parser can read it in place.
    answer.body->reserve(body.size() + JsonDocument::padding);
    answer.body->append(body);
    answer.source = source;
    return answer;
}

void transfer(Exchange exchange) {
    exchange.cacheUse->requestTime = WallClock::now();
    IoThread::transfer(std::move(exchange));
}

void settleConfirmation(Exchange exchange, const HttpResponse& confirmation, const ExchangeTimes& times) {
    auto confirmed = exchange.cacheUse->stored->confirmedBy(confirmation);
    if (!confirmed) {
        // The server speaks of another answer than the one asked about: only a whole one helps now.
        exchange.cacheUse->stored.reset();
        exchange.cacheUse->conditional.reset();
        transfer(std::move(exchange));
        return;
    }
    const auto request = exchange.request;
    const auto cache = exchange.cacheUse->cache;
    const auto record = StoredAnswer::record(*confirmed, exchange.cacheUse->stored->body(), fieldsOf(exchange), times);
    complete(std::move(exchange), answerFrom(std::move(*confirmed), *record->body, HttpAnswer::Source::revalidated));
    cache->storeCachedResponse(record, *request);
}

}  // namespace

CacheThread* attachCache(Exchange& exchange) {
    const auto& own = exchange.session->configuration().cache;
    auto cache = own ? own : UrlCache::installed();
    if (!cache) {
        return nullptr;
    }
    const bool mayAnswer = mayUseCache(*exchange.request, fieldsOf(exchange));
    if (!mayAnswer && !mayChangeState(exchange.request->method())) {
        return nullptr;
    }
    try {
        auto& thread = CacheThread::shared();
        exchange.cacheUse = std::make_unique<CacheUse>();
        exchange.cacheUse->cache = std::move(cache);
        return mayAnswer ? &thread : nullptr;
    } catch (const std::exception& error) {
        if (DebugChannel::isOpen()) {
            DebugChannel::write(std::string{"The cache is not used: "}.append(error.what()), "attachCache");
        }
        return nullptr;
    }
}

void answerOrTransfer(Exchange exchange) {
    if (exchange.session->isDropped()) {
        fail(std::move(exchange), sessionDropped());
        return;
    }
    auto& use = *exchange.cacheUse;
    auto stored = StoredAnswer::read(use.cache->cachedResponse(*exchange.request), fieldsOf(exchange));
    const auto now = WallClock::now();
    if (stored && stored->isFresh(now, requestControl(fieldsOf(exchange)))) {
        auto response = stored->response();
        response.headers.insert_or_assign("age", std::to_string(stored->age(now).count()));
        complete(std::move(exchange), answerFrom(std::move(response), *stored->body(), HttpAnswer::Source::cache));
        return;
    }
    if (stored) {
        use.conditional = stored->conditional(*exchange.request);
        if (use.conditional) {
            use.stored = std::move(stored);
        }
    }
    transfer(std::move(exchange));
}

void settleWithCache(Exchange exchange, HttpAnswer answer) {
    const auto request = exchange.request;
    const auto cache = exchange.cacheUse->cache;
    const auto& response = *answer.response;
    const ExchangeTimes times{exchange.cacheUse->requestTime, WallClock::now()};
    if (mayChangeState(request->method())) {
        const bool isDone = response.status >= firstSuccess && response.status < firstFailure;
        complete(std::move(exchange), std::move(answer));
        if (isDone) {
            cache->removeCachedResponse({HttpMethod::get, request->url(), {}, ParameterEncoding::url, {}});
        }
        return;
    }
    if (response.status == notModified && exchange.cacheUse->stored) {
        settleConfirmation(std::move(exchange), response, times);
        return;
    }
    // What is behind a redirect belongs to another URL.
    const bool isStored = !exchange.hop && mayBeStored(response);
    const bool isReplaced = response.status >= firstSuccess && response.status < firstFailure;
    const auto record = isStored ? StoredAnswer::record(response, std::make_shared<const Bytes>(*answer.body),
                                                        fieldsOf(exchange), times)
                                 : nullptr;
    complete(std::move(exchange), std::move(answer));
    if (record) {
        cache->storeCachedResponse(record, *request);
    } else if (isReplaced) {
        cache->removeCachedResponse(*request);
    }
}

}  // namespace Tarnwick_API::Platform
