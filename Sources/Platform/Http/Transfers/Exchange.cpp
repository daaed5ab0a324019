#include <Platform/Http/Transfers/Exchange.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

void complete(Exchange exchange, HttpAnswer answer) {
    exchange.onAnswer({std::move(answer), exchange.hop != nullptr});
}

}  // namespace Tarnwick_API::Platform
