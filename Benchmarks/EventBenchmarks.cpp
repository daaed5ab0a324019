#include <Tarnwick_API/Events/Event.hpp>

#include "Measurements.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace Benchmarks {
namespace {

struct Listener {
    std::int64_t sum = 0;
    void hear(std::int64_t value) { sum += value; }
};

template <typename Raise>
void measure(benchmark::State& state, const char* candidate, const Raise& raise) {
    constexpr std::int64_t callsInAll = 2'000'000;
    const auto rounds = callsInAll / state.range(0);
    for ([[maybe_unused]] auto iteration : state) {
        const auto begin = std::chrono::steady_clock::now();
        for (std::int64_t round = 0; round < rounds; ++round) {
            raise(round);
        }
        const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
        const auto each = time.count() / static_cast<double>(rounds);
        state.counters["us"] = each;
        const auto count = state.range(0) == 10000
                               ? std::string{"10,000 handlers"}
                               : std::to_string(state.range(0)) + (state.range(0) == 1 ? " handler" : " handlers");
        note("raise to " + count + ": us", candidate, each);
    }
}

void raiseEvent(benchmark::State& state) {
    const auto event = Tarnwick_API::Event<std::int64_t>::create();
    std::vector<std::shared_ptr<Listener>> listeners;
    std::vector<std::shared_ptr<Tarnwick_API::Disposable>> subscriptions;
    for (std::int64_t index = 0; index < state.range(0); ++index) {
        listeners.push_back(std::make_shared<Listener>());
        subscriptions.push_back(event->addHandler(listeners.back(), &Listener::hear));
    }
    measure(state, "event", [&](std::int64_t value) { event->raise(value); });
    benchmark::DoNotOptimize(listeners.front()->sum);
    for (const auto& subscription : subscriptions) {
        subscription->dispose();
    }
}

template <typename MakeFunction>
void loopOver(benchmark::State& state, const char* candidate, const MakeFunction& makeFunction) {
    std::vector<std::shared_ptr<Listener>> listeners;
    std::vector<std::function<void(const std::int64_t&)>> functions;
    for (std::int64_t index = 0; index < state.range(0); ++index) {
        listeners.push_back(std::make_shared<Listener>());
        functions.emplace_back(makeFunction(listeners.back()));
    }
    measure(state, candidate, [&](std::int64_t value) {
        for (const auto& function : functions) {
            function(value);
        }
    });
    benchmark::DoNotOptimize(listeners.front()->sum);
}

void loopOverFunctions(benchmark::State& state) {
    loopOver(state, "loop over std::function", [](const std::shared_ptr<Listener>& listener) {
        return [listener](const std::int64_t& value) { listener->hear(value); };
    });
}

/// What an application would write for targets that may go.
void loopOverWeakFunctions(benchmark::State& state) {
    loopOver(state, "loop with weak targets", [](const std::shared_ptr<Listener>& listener) {
        return [target = std::weak_ptr{listener}](const std::int64_t& value) {
            if (const auto alive = target.lock()) {
                alive->hear(value);
            }
        };
    });
}

BENCHMARK(raiseEvent)->Arg(1)->Arg(10)->Arg(10000)->Iterations(1);
BENCHMARK(loopOverFunctions)->Arg(1)->Arg(10)->Arg(10000)->Iterations(1);
BENCHMARK(loopOverWeakFunctions)->Arg(1)->Arg(10)->Arg(10000)->Iterations(1);

}  // namespace
}  // namespace Benchmarks
