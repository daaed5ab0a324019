#pragma once

#include <Tarnwick_API/Facade/RetrySpread.hpp>

#include <chrono>
#include <cstdint>

namespace Tarnwick_API {

/// How long to wait after attempt number `retryCount`, counted from 0, has failed: e^(0.1 n) seconds, spread as
/// `spread` says. None: as it is.
[[nodiscard]] std::chrono::nanoseconds pauseBeforeRetry(std::int64_t retryCount, const RetrySpread* spread);

}  // namespace Tarnwick_API
