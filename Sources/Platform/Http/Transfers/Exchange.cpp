#include <Platform/Http/Caching/CacheThread.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

namespace {

struct Delivery {
    HttpSession::Completion completion;
    HttpAnswer answer;
};

}  // namespace

void complete(Exchange exchange, HttpAnswer answer) {
    if (!exchange.completion) {
        return;
    }
    answer.request = std::move(exchange.request);
    // A task must be copyable and an answer is too great to copy: so it is shared.
    auto delivery = std::make_shared<Delivery>(Delivery{std::move(exchange.completion), std::move(answer)});
    exchange.queue->soon([delivery = std::move(delivery)] { delivery->completion(std::move(delivery->answer)); });
}

void conclude(Exchange exchange, HttpAnswer answer) {
    if (exchange.cacheUse && !answer.error) {
        // It runs: the exchange came by it or through a session that found it running.
        CacheThread::shared().settle(std::move(exchange), std::move(answer));
    } else {
        complete(std::move(exchange), std::move(answer));
    }
}

void fail(Exchange exchange, HttpError error) {
    HttpAnswer answer;
    answer.error = std::move(error);
    answer.body.emplace();
    complete(std::move(exchange), std::move(answer));
}

}  // namespace Tarnwick_API::Platform
