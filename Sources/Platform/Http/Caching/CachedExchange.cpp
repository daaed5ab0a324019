#include <Platform/Http/Caching/CachedExchange.hpp>

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Http/Caching/CacheThread.hpp>
#include <Platform/Http/Caching/CachingRules.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::int64_t firstSuccess = 200;
constexpr std::int64_t notModified = 304;
constexpr std::int64_t firstError = 400;

/// What `use` gives; what it would give by default when a host's own cache throws, which its developer is told.
template <typename Use>
auto unlessItThrows(const Use& use) -> decltype(use()) {
    try {
        return use();
    } catch (...) {
        DebugChannel::writeException("The cache has failed", "transfer");
    }
    return decltype(use())();
}

void store(const CachedExchange& exchange, const std::shared_ptr<const CachedUrlResponse>& entry) {
    unlessItThrows([&] { exchange.cache->storeCachedResponse(entry, *exchange.request); });
}

void remove(const CachedExchange& exchange, const HttpRequest& request) {
    unlessItThrows([&] { exchange.cache->removeCachedResponse(request); });
}

bool isError(const HttpResponse& response) {
    return response.status < firstSuccess || response.status >= firstError;
}

/// Answers what was asked for, whatever was sent for it.
void complete(const CachedExchange& exchange, TransportResult result) {
    result.answer.request = exchange.request;
    exchange.onAnswer(std::move(result));
}

RequestFields fieldsOf(const CachedExchange& exchange) {
    return {*exchange.request, *exchange.sessionHeaders};
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

/// Answers with the stored response that the server was asked to validate, and freshens it.
void settleValidation(CachedExchange exchange, const HttpResponse& validation, const ExchangeTimes& times) {
    auto freshened = exchange.stored->freshenedBy(validation);
    if (!freshened) {
        // The server speaks of another response than the one asked about: only a whole one helps now.
        exchange.stored.reset();
        forward(std::move(exchange));
        return;
    }
    const auto entry = StoredResponse::entry(*freshened, exchange.stored->body(), fieldsOf(exchange), times);
    complete(exchange, {answerFrom(std::move(*freshened), *entry->body, HttpAnswer::Source::revalidated)});
    store(exchange, entry);
}

/// Answers an unsafe request, and gives up what is stored for its URL unless that has answered with an error. What a
/// redirect came to is another URL's word, and a head counts though its body was cut.
void settleUnsafe(const CachedExchange& exchange, TransportResult result) {
    const bool invalidates = result.isRedirected || (result.answer.response && !isError(*result.answer.response));
    complete(exchange, std::move(result));
    if (invalidates) {
        remove(exchange, {HttpMethod::get, exchange.request->url(), {}, ParameterEncoding::url, {}});
    }
}

/// Answers with the server's response, and stores it or gives up what it makes invalid.
void settle(CachedExchange exchange, TransportResult result) {
    if (!isSafe(exchange.request->method())) {
        settleUnsafe(exchange, std::move(result));
        return;
    }
    const ExchangeTimes times{exchange.requestTime, WallClock::now()};
    const auto& response = *result.answer.response;
    if (response.status == notModified && exchange.stored) {
        settleValidation(std::move(exchange), response, times);
        return;
    }
    // What is behind a redirect belongs to another URL.
    const bool isStored = !result.isRedirected && result.isKnownWhole && mayBeStored(response);
    const auto entry = isStored ? StoredResponse::entry(response, std::make_shared<const Bytes>(*result.answer.body),
                                                        fieldsOf(exchange), times)
                                : nullptr;
    const bool isOutdated = !isError(response);
    complete(exchange, std::move(result));
    if (entry) {
        store(exchange, entry);
    } else if (isOutdated) {
        remove(exchange, *exchange.request);
    }
}

void transfer(CachedExchange exchange, std::shared_ptr<const HttpRequest> request) {
    const auto next = exchange.next.lock();
    if (!next) {
        complete(exchange, {cancelledAnswer()});
        return;
    }
    exchange.requestTime = WallClock::now();
    auto stop = exchange.stop;
    auto onAnswer = [exchange = std::move(exchange)](TransportResult result) mutable {
        if (result.answer.error && isSafe(exchange.request->method())) {
            complete(exchange, std::move(result));
            return;
        }
        CacheThread::shared().push([exchange = std::move(exchange), result = std::move(result)]() mutable {
            settle(std::move(exchange), std::move(result));
        });
    };
    next->transfer(std::move(request), std::move(onAnswer), std::move(stop));
}

}  // namespace

void answerOrForward(CachedExchange exchange) {
    if (exchange.next.expired() || exchange.stop.isStopped()) {
        complete(exchange, {cancelledAnswer()});
        return;
    }
    const auto fields = fieldsOf(exchange);
    const auto found = unlessItThrows([&] { return exchange.cache->cachedResponse(*exchange.request); });
    auto stored = StoredResponse::read(found, fields);
    const auto now = WallClock::now();
    if (stored && stored->isFresh(now, requestDirectives(fields))) {
        auto response = stored->response();
        response.headers.insert_or_assign("age", std::to_string(stored->currentAge(now).count()));
        complete(exchange, {answerFrom(std::move(response), *stored->body(), HttpAnswer::Source::cache)});
        return;
    }
    auto validation = stored ? stored->validationRequest(*exchange.request) : nullptr;
    if (validation) {
        exchange.stored = std::make_shared<const StoredResponse>(*std::move(stored));
        transfer(std::move(exchange), std::move(validation));
    } else {
        forward(std::move(exchange));
    }
}

void forward(CachedExchange exchange) {
    auto request = exchange.request;
    transfer(std::move(exchange), std::move(request));
}

}  // namespace Tarnwick_API::Platform
