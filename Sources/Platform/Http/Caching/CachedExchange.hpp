#pragma once

#include <Platform/Http/Transfers/Exchange.hpp>

namespace Tarnwick_API::Platform {

class CacheThread;

/// Gives a new exchange its cache, if there is one and it has to know of the exchange. The thread on which the cache is
/// to be asked for the answer; null when the server is.
[[nodiscard]] CacheThread* attachCache(Exchange& exchange);

/// Completes an exchange from its cache, or sends it to the server. May wait for the disk.
void answerOrTransfer(Exchange exchange);

/// Completes an exchange with the server's answer, and keeps that for later or gives up what it makes invalid. May wait
/// for the disk.
void settleWithCache(Exchange exchange, HttpAnswer answer);

}  // namespace Tarnwick_API::Platform
