#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include "CurlPeers.hpp"
#include "Measurements.hpp"
#include "ServiceProcess.hpp"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace Benchmarks {
namespace {

using namespace Tarnwick_API;
using Clock = std::chrono::steady_clock;

double microseconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

StatusTarget target(bool isHttp2) {
    const auto& service = ServiceProcess::shared();
    return {isHttp2 ? service.http2Port() : service.port(), isHttp2};
}

/// The library as an application uses it, with a session of its own.
class Library {
public:
    explicit Library(StatusTarget target) {
        const auto& service = ServiceProcess::shared();
        auto configuration = ApiVersion1::defaultSessionConfiguration();
        configuration.trustedRootsFile = service.caFile();
        configuration.usesProxy = false;
        configuration.connectTo = {service.host() + ":127.0.0.1:" + std::to_string(target.port)};
        ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
        Platform::MainQueue::setMain(queue_);
        const auto host = service.host();
        api_ = TarnwickApi::create(ApiVersion::v1, "tarnwick-demo-key", "tarnwick-demo-secret", 7,
                                   Platform::Uuid::random(), "benchmarks",
                                   FilterIds{11, 12, 13, 14, 22, 23, 32, 33, 41}, ApiUrl{host, host, host, host});
    }
    ~Library() {
        ApiVersion1::setSessionManager(nullptr);
        Platform::MainQueue::setMain(nullptr);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// Asks for the status `count` times at once; how many decoded answers came.
    std::size_t requestStatus(std::size_t count) {
        std::size_t answered = 0;
        std::size_t decoded = 0;
        for (std::size_t index = 0; index < count; ++index) {
            api_->getStatus([&](const std::optional<Status>& status, const std::optional<ApiError>& /*error*/) {
                decoded += status ? 1U : 0U;
                ++answered;
            });
        }
        queue_->runUntil([&] { return answered == count; });
        return decoded;
    }

private:
    std::shared_ptr<Platform::BuiltInMainQueue> queue_ = std::make_shared<Platform::BuiltInMainQueue>();
    std::shared_ptr<TarnwickApi> api_;
};

template <typename Request>
void oneRequest(benchmark::State& state, const char* candidate, Request request) {
    constexpr int warmUps = 50;
    for (int count = 0; count < warmUps; ++count) {
        if (!request()) {
            state.SkipWithError("the service did not answer");
            return;
        }
    }
    std::vector<double> times;
    const auto cpuBefore = processCpuTime();
    for ([[maybe_unused]] auto iteration : state) {
        const auto begin = Clock::now();
        if (!request()) {
            state.SkipWithError("the service did not answer");
            return;
        }
        times.push_back(microseconds(Clock::now() - begin));
    }
    const auto cpu = microseconds(processCpuTime() - cpuBefore) / static_cast<double>(times.size());
    const auto p50 = median(times);
    state.counters["p50_us"] = p50;
    state.counters["cpu_us"] = cpu;
    note("one status request: p50 us", candidate, p50);
    note("one status request: CPU us", candidate, cpu);
}

void oneStatusByLibrary(benchmark::State& state) {
    Library library{target(false)};
    oneRequest(state, "library", [&] { return library.requestStatus(1) == 1; });
}

void oneStatusByEasyHandle(benchmark::State& state) {
    ReusedEasyHandle handle{target(false)};
    oneRequest(state, "reused easy handle", [&] { return handle.requestStatus(); });
}

constexpr std::size_t manyRequests = 10000;

template <typename RequestAll>
void requestsAtOnce(benchmark::State& state, bool isHttp2, const char* candidate, RequestAll requestAll) {
    const std::string protocol = isHttp2 ? "HTTP/2" : "HTTP/1.1";
    for ([[maybe_unused]] auto iteration : state) {
        const PeakMemory memory;
        const auto begin = Clock::now();
        if (requestAll() != manyRequests) {
            state.SkipWithError("answers are missing");
            return;
        }
        const std::chrono::duration<double> seconds = Clock::now() - begin;
        const auto rate = static_cast<double>(manyRequests) / seconds.count();
        constexpr double megabyte = 1e6;
        const auto growth = static_cast<double>(memory.growth()) / megabyte;
        state.counters["requests_per_s"] = rate;
        state.counters["memory_MB"] = growth;
        note("10,000 at once, " + protocol + ": requests/s", candidate, rate);
        note("10,000 at once, " + protocol + ": MB", candidate, growth);
    }
}

void atOnceByLibrary(benchmark::State& state) {
    const bool isHttp2 = state.range(0) != 0;
    Library library{target(isHttp2)};
    if (library.requestStatus(1) != 1) {
        state.SkipWithError("the service did not answer");
        return;
    }
    requestsAtOnce(state, isHttp2, "library", [&] { return library.requestStatus(manyRequests); });
}

void atOnceByPlainMulti(benchmark::State& state) {
    const bool isHttp2 = state.range(0) != 0;
    requestsAtOnce(state, isHttp2, "plain multi handle",
                   [&] { return requestStatusAtOnce(target(isHttp2), manyRequests); });
}

void reconnectByLibrary(benchmark::State& state) {
    Library library{target(false)};
    const auto& service = ServiceProcess::shared();
    std::vector<double> times;
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        service.closeConnections(1);
        const bool answered = library.requestStatus(1) == 1;
        state.ResumeTiming();
        const auto begin = Clock::now();
        if (!answered || library.requestStatus(1) != 1) {
            state.SkipWithError("the service did not answer");
            return;
        }
        times.push_back(microseconds(Clock::now() - begin));
    }
    state.counters["p50_us"] = median(times);
    note("request on a new connection: p50 us", "library", median(times));
}

BENCHMARK(oneStatusByEasyHandle)->Iterations(3000)->UseRealTime();
BENCHMARK(oneStatusByLibrary)->Iterations(3000)->UseRealTime();
BENCHMARK(atOnceByPlainMulti)
    ->ArgName("http2")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(atOnceByLibrary)
    ->ArgName("http2")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(reconnectByLibrary)->Iterations(200)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Benchmarks
