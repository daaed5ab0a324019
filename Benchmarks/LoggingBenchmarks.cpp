#include "Measurements.hpp"
#include <Platform/Logging/DebugChannel.hpp>

#include <chrono>
#include <string>

#include <benchmark/benchmark.h>

namespace Benchmarks {
namespace {

constexpr int rounds = 10000000;

template <typename Body>
double nanosecondsPerRound(Body body) {
    const auto begin = std::chrono::steady_clock::now();
    for (int round = 0; round < rounds; ++round) {
        body(round);
    }
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - begin;
    return time.count() / rounds;
}

void unreadLogLine(benchmark::State& state) {
    for ([[maybe_unused]] auto iteration : state) {
        const auto empty = nanosecondsPerRound([](int round) { benchmark::DoNotOptimize(round); });
        const auto logging = nanosecondsPerRound([](int round) {
            if (Tarnwick_API::Platform::DebugChannel::isOpen()) {
                Tarnwick_API::Platform::DebugChannel::write("round " + std::to_string(round), "unreadLogLine");
            }
            benchmark::DoNotOptimize(round);
        });
        note("unread log line: ns more than none", "library", logging - empty);
        state.counters["ns"] = logging - empty;
    }
}

BENCHMARK(unreadLogLine)->Iterations(1);

}  // namespace
}  // namespace Benchmarks
