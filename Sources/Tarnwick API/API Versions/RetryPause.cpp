#include "RetryPause.hpp"

#include <algorithm>
#include <cmath>
#include <random>

namespace Tarnwick_API {

namespace {

/// From 0 to 1, whatever it is; 0 for what is no number.
double proportion(double number) noexcept {
    return number > 0 ? std::min(number, 1.0) : 0;
}

double randomProportion(const RetrySpread& spread) {
    if (spread.random) {
        return proportion(spread.random());
    }
    // Asked for each pause, which is rare: a generator of our own would go on alike in both processes after a fork.
    std::random_device device;
    return std::uniform_real_distribution<double>{}(device);
}

}  // namespace

std::chrono::nanoseconds pauseBeforeRetry(std::int64_t retryCount, const RetrySpread* spread) {
    std::chrono::duration<double> seconds{std::exp(0.1 * static_cast<double>(retryCount))};
    if (spread != nullptr && spread->share > 0) {
        const double share = proportion(spread->share);
        seconds *= 1 - share + 2 * share * randomProportion(*spread);
    }
    return std::chrono::duration_cast<std::chrono::nanoseconds>(seconds);
}

}  // namespace Tarnwick_API
