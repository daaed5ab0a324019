#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include "Measurements.hpp"
#include "ServiceProcess.hpp"

#include <chrono>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace Benchmarks {
namespace {

constexpr std::size_t bodySize = 1'000'000;

/// Asks for the same 1 MB again and again, in a session with `cache`.
void sameAnswer(benchmark::State& state, const char* candidate, std::shared_ptr<Tarnwick_API::Platform::UrlCache> cache,
                Tarnwick_API::Platform::HttpAnswer::Source expected) {
    const auto& service = ServiceProcess::shared();
    [[maybe_unused]] static const bool isServed = (service.serve("servers/1", bodySize), true);
    Tarnwick_API::Platform::HttpSessionConfiguration configuration;
    configuration.trustedRootsFile = service.caFile();
    configuration.usesProxy = false;
    configuration.cache = std::move(cache);
    const auto session = Tarnwick_API::Platform::makeHttpSession(configuration);
    const auto queue = std::make_shared<Tarnwick_API::Platform::BuiltInMainQueue>();
    Tarnwick_API::Platform::MainQueue::setMain(queue);
    const auto request = std::make_shared<const Tarnwick_API::Platform::HttpRequest>(
        Tarnwick_API::Platform::HttpMethod::get,
        *Tarnwick_API::Platform::Url::fromString("https://" + service.host() + "/vb/servers/1"),
        Tarnwick_API::Platform::Parameters{}, Tarnwick_API::Platform::ParameterEncoding::url,
        Tarnwick_API::Platform::HttpHeaders{});
    const auto ask = [&] {
        std::optional<Tarnwick_API::Platform::HttpAnswer> answer;
        session->send(request, [&](Tarnwick_API::Platform::HttpAnswer received) { answer = std::move(received); });
        queue->runUntil([&] { return answer.has_value(); });
        return std::move(*answer);
    };
    static_cast<void>(ask());
    std::vector<double> times;
    for ([[maybe_unused]] auto iteration : state) {
        const auto begin = std::chrono::steady_clock::now();
        const auto answer = ask();
        times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count());
        if (answer.error || answer.source != expected || answer.body->size() != bodySize) {
            state.SkipWithError("another answer than expected");
            break;
        }
    }
    Tarnwick_API::Platform::MainQueue::setMain(nullptr);
    if (!times.empty()) {
        state.counters["p50_us"] = median(times);
        note("1 MB answer: p50 us", candidate, median(times));
    }
}

void fetched(benchmark::State& state) {
    sameAnswer(state, "fetched over loopback", nullptr, Tarnwick_API::Platform::HttpAnswer::Source::network);
}

void fromMemory(benchmark::State& state) {
    sameAnswer(state, "cache in memory",
               std::make_shared<Tarnwick_API::Platform::UrlCache>(4 * bodySize, 0, std::nullopt),
               Tarnwick_API::Platform::HttpAnswer::Source::cache);
}

void fromDisk(benchmark::State& state) {
    sameAnswer(state, "cache on disk",
               std::make_shared<Tarnwick_API::Platform::UrlCache>(0, 4 * bodySize,
                                                                  ServiceProcess::shared().folder() / "cache"),
               Tarnwick_API::Platform::HttpAnswer::Source::cache);
}

BENCHMARK(fetched)->Iterations(300)->UseRealTime();
BENCHMARK(fromMemory)->Iterations(300)->UseRealTime();
BENCHMARK(fromDisk)->Iterations(300)->UseRealTime();

}  // namespace
}  // namespace Benchmarks
