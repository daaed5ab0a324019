#include <Platform/Http/Transfers/Exchange.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

void complete(Exchange exchange, TransportResult result) {
    result.answer.request = std::move(exchange.request);
    result.isRedirected = exchange.hop != nullptr;
    exchange.onAnswer(std::move(result));
}

void complete(Exchange exchange, HttpAnswer answer) {
    complete(std::move(exchange), TransportResult{std::move(answer)});
}

}  // namespace Tarnwick_API::Platform
