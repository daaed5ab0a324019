#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace Benchmarks {

using Seconds = std::chrono::duration<double>;

/// What becomes of a request that the service can't answer.
enum class Rejection {
    answer503,  ///< an answer, which the library tells the application at once
    refused,    ///< the connection is: the library tries again
    vanished,   ///< no packet comes back: the library tries again after a time-out
};

/// A fleet of applications, and what happens to their service.
struct Scenario {
    std::size_t clients = 100'000;
    /// Each application asks for the status so often, at a time of its own.
    Seconds interval{600};
    /// Before the outage, and after it.
    Seconds before{30};
    Seconds after{120};
    Seconds outage{3};
    Rejection duringOutage = Rejection::refused;
    /// Requests a second that the service answers afterwards, as a multiple of the normal load.
    double capacity = 20;
    Rejection beyondCapacity = Rejection::refused;
    /// So many applications notice the outage as it begins, as their tunnels go down with it, and ask at once.
    double disturbed = 1;
    /// They notice it within this time.
    Seconds reaction{0.2};
    /// An application that got no answer asks again by itself after this time; zero: not before its next turn.
    Seconds again{0};
    /// Of the users who see no answer, so many press a button, after this time on average.
    double impatient = 0.2;
    Seconds patience{10};
    /// `RetrySpread::share`.
    double spread = 0;
    std::uint64_t seed = 1;

    [[nodiscard]] double normalLoad() const { return static_cast<double>(clients) / interval.count(); }
    [[nodiscard]] Seconds backAt() const { return before + outage; }
    [[nodiscard]] Seconds end() const { return backAt() + after; }
};

}  // namespace Benchmarks
