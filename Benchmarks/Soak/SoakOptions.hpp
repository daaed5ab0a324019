#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace Benchmarks {

/// What the user asks a run for.
struct SoakOptions {
    /// How many operations to begin.
    std::size_t requests = 20'000;
    std::size_t inFlight = 200;
    /// Of so many requests the service spoils one, as a share.
    double faultShare = 0.02;
    std::uint64_t seed = 1;
    /// When to begin no more, whatever is missing; none for zero.
    std::chrono::seconds duration{0};
    bool http2 = false;
    /// How many processes to end in each way in the middle of their load.
    std::size_t exits = 0;
};

}  // namespace Benchmarks
