#include <Tarnwick_API/Platform/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/HttpSession.hpp>
#include <Tarnwick_API/Platform/UrlCache.hpp>

#include "Measurements.hpp"
#include "ServiceProcess.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Benchmarks {
namespace {

constexpr std::size_t bodySize = 1'000'000;

/// Asks for the same 1 MB again and again, in a session with `cache`.
void sameAnswer(benchmark::State& state, const char* candidate, std::shared_ptr<Platform::UrlCache> cache,
                Platform::HttpAnswer::Source expected) {
    const auto& service = ServiceProcess::shared();
    [[maybe_unused]] static const bool isServed = (service.serve("large", bodySize), true);
    Platform::HttpSessionConfiguration configuration;
    configuration.trustedRootsFile = service.caFile();
    configuration.usesProxy = false;
    configuration.cache = std::move(cache);
    const auto session = Platform::makeHttpSession(configuration);
    const auto queue = std::make_shared<Platform::BuiltInMainQueue>();
    Platform::MainQueue::setMain(queue);
    const auto request = std::make_shared<const Platform::HttpRequest>(
        Platform::HttpMethod::get, *Platform::Url::fromString("https://" + service.host() + "/vb/large"),
        Platform::Parameters{}, Platform::ParameterEncoding::url, Platform::HttpHeaders{});
    const auto ask = [&] {
        std::optional<Platform::HttpAnswer> answer;
        session->send(request, [&](Platform::HttpAnswer received) { answer = std::move(received); });
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
    Platform::MainQueue::setMain(nullptr);
    if (!times.empty()) {
        state.counters["p50_us"] = median(times);
        note("1 MB answer: p50 us", candidate, median(times));
    }
}

void fetched(benchmark::State& state) {
    sameAnswer(state, "fetched over loopback", nullptr, Platform::HttpAnswer::Source::network);
}

void fromMemory(benchmark::State& state) {
    sameAnswer(state, "cache in memory", std::make_shared<Platform::UrlCache>(4 * bodySize, 0, std::nullopt),
               Platform::HttpAnswer::Source::cache);
}

void fromDisk(benchmark::State& state) {
    sameAnswer(state, "cache on disk",
               std::make_shared<Platform::UrlCache>(0, 4 * bodySize, ServiceProcess::shared().folder() / "cache"),
               Platform::HttpAnswer::Source::cache);
}

BENCHMARK(fetched)->Iterations(300)->UseRealTime();
BENCHMARK(fromMemory)->Iterations(300)->UseRealTime();
BENCHMARK(fromDisk)->Iterations(300)->UseRealTime();

}  // namespace
}  // namespace Benchmarks
