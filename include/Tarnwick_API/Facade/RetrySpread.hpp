#pragma once

#include <functional>

namespace Tarnwick_API {

/// How far the pauses before a request is tried again are spread. Without it they are the same ones in every
/// installation, so that applications which lost the service in the same moment all come back in the same moments.
struct RetrySpread {
    /// Each pause is drawn anew, evenly between `1 - share` and `1 + share` of what it is without: with 0.5 the first
    /// takes from 0.5 to 1.5 seconds. On average they take as long as before, at most `1 + share` times as long. With 0
    /// they are not spread; what is below, or no number, counts as 0, and what is above 1 as 1.
    double share = 0;
    /// Gives a number from 0 to 1, for tests: once for each pause, on the main queue. It must not throw. None: the
    /// system's random numbers.
    std::function<double()> random = {};
};

}  // namespace Tarnwick_API
