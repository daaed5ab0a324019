#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include "AllocationCount.hpp"
#include "Api/CatalogueRecords.hpp"
#include "Configuration.hpp"
#include "Measurements.hpp"
#include "Model/Catalogue.hpp"
#include "ServerListPeers.hpp"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace Benchmarks {
namespace {

using namespace Tarnwick_API;
using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

const TarnwickService::Catalogue& catalogueOf(std::size_t count) {
    static std::map<std::size_t, TarnwickService::Catalogue> catalogues;
    const auto known = catalogues.find(count);
    if (known != catalogues.end()) {
        return known->second;
    }
    return catalogues
        .try_emplace(count, TarnwickService::readPlaces(TarnwickService::Configuration{}.zoneDirectory), count)
        .first->second;
}

/// A body as the HTTP layer hands it on, with room behind it for the parser.
Platform::Bytes withPadding(const std::string& text) {
    Platform::Bytes body;
    body.reserve(text.size() + Platform::JsonDocument::padding);
    body.append(text);
    return body;
}

Platform::Bytes shortServers(std::size_t count) {
    const auto& catalogue = catalogueOf(count);
    return withPadding(TarnwickService::shortServerList(catalogue, catalogue.list({})));
}

std::vector<Server> serversByLibrary(const Platform::Bytes& body) {
    return decodeServers(body, ServerJsonKind::short_);
}

using Reader = std::vector<Server> (*)(const Platform::Bytes&);

void shortServerList(benchmark::State& state, const char* candidate, Reader read) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto body = shortServers(count);
    if (read(body).size() != count) {
        state.SkipWithError("servers are missing");
        return;
    }
    std::vector<double> times;
    std::size_t allocations = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const auto allocationsBefore = allocationCount();
        const auto begin = Clock::now();
        auto servers = read(body);
        times.push_back(milliseconds(Clock::now() - begin));
        allocations = allocationCount() - allocationsBefore;
        benchmark::DoNotOptimize(servers);
        state.PauseTiming();
        servers = {};
        state.ResumeTiming();
    }
    const auto time = median(times);
    state.counters["ns_per_server"] = time * 1e6 / static_cast<double>(count);
    state.counters["allocations_per_server"] = static_cast<double>(allocations) / static_cast<double>(count);
    state.SetBytesProcessed(static_cast<std::int64_t>(body.size()) * state.iterations());
    if (count == 10000) {
        note("10,000 short servers: ms", candidate, time);
        note("10,000 short servers: allocations", candidate, static_cast<double>(allocations));
    }
    note("short servers: us each", std::string{candidate} + (count == 10000 ? ", 10,000" : ", 100,000"),
         time * 1000 / static_cast<double>(count));
}

void peakMemoryOfServers(benchmark::State& state) {
    constexpr std::size_t count = 100000;
    auto body = shortServers(count);
    constexpr double megabyte = 1e6;
    for ([[maybe_unused]] auto iteration : state) {
        const PeakMemory memory;
        const auto before = residentMemory();
        const auto servers = serversByLibrary(body);
        const auto peak = static_cast<double>(memory.growth() + body.size());
        const auto left = static_cast<double>(residentMemory() - before);
        note("100,000 short servers: peak / body", "library", peak / static_cast<double>(body.size()));
        note("100,000 short servers: MB kept", "library", left / megabyte);
        note("100,000 short servers: MB of the list", "library",
             static_cast<double>(servers.size() * sizeof(Server)) / megabyte);
        state.counters["peak_per_body"] = peak / static_cast<double>(body.size());
    }
}

/// Hands on bodies made beforehand, as the I/O thread does: by moving them.
class ReadySession final : public Platform::HttpSession {
public:
    explicit ReadySession(Platform::Bytes body) : body_{std::move(body)} {}
    [[nodiscard]] const Platform::HttpHeaders& defaultHeaders() const override { return headers_; }
    [[nodiscard]] bool isReachable(std::string_view /*urlText*/) const override { return true; }
    void send(std::shared_ptr<const Platform::HttpRequest> request, Completion onCompletion) override {
        auto answer = std::make_shared<Platform::HttpAnswer>();
        answer->request = std::move(request);
        answer->response = Platform::HttpResponse{200, {}};
        answer->body = withPadding(body_);
        Platform::MainQueue::main()->soon(
            [answer, onCompletion = std::move(onCompletion)] { onCompletion(std::move(*answer)); });
    }

private:
    Platform::Bytes body_;
    Platform::HttpHeaders headers_;
};

/// How long the task that carries an answer holds the main queue, from the engine's first look at it to the end of the
/// application's completion.
void mainQueueHeld(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    Platform::MainQueue::setMain(queue);
    ApiVersion1::setSessionManager(std::make_shared<ReadySession>(shortServers(count)));
    const auto api = TarnwickApi::create(ApiVersion::v1, "k", "s", 7, Platform::Uuid::random(), "benchmarks",
                                         FilterIds{1, 2, 3, 4, 5, 6, 7, 8, 9}, ApiUrl{"h", "h", "h", "h"});
    std::vector<double> times;
    for ([[maybe_unused]] auto iteration : state) {
        std::vector<Server> received;
        api->getServers("DE", std::nullopt, std::nullopt, [&](auto servers, const auto& /*error*/) {
            received = std::move(servers).value_or(std::vector<Server>{});
        });
        const auto begin = Clock::now();
        queue->runReady();
        times.push_back(milliseconds(Clock::now() - begin));
        if (received.size() != count) {
            state.SkipWithError("servers are missing");
            break;
        }
    }
    ApiVersion1::setSessionManager(nullptr);
    Platform::MainQueue::setMain(nullptr);
    const auto held = median(times);
    state.counters["held_ms"] = held;
    const std::string number = count == 1000 ? "1,000" : count == 10000 ? "10,000" : "100,000";
    note("main queue held, " + number + " servers: ms", "library", held);
}

/// Candidates take turns within a round, so that nothing that lasts longer comes between them.
template <typename ByLibrary, typename ByHand>
void sameList(benchmark::State& state, const std::string& metric, const Platform::Bytes& body, std::size_t count,
              ByLibrary byLibrary, ByHand byHand) {
    std::vector<double> libraryTimes;
    std::vector<double> handTimes;
    const auto measure = [&](auto read, std::vector<double>& times) {
        const auto begin = Clock::now();
        const auto records = read(body);
        times.push_back(milliseconds(Clock::now() - begin) * 1000);
        return records.size() == count;
    };
    for ([[maybe_unused]] auto iteration : state) {
        if (!measure(byLibrary, libraryTimes) || !measure(byHand, handTimes)) {
            state.SkipWithError("records are missing");
            return;
        }
    }
    note(metric + ": us", "library", median(libraryTimes));
    note(metric + ": us", "simdjson by hand", median(handTimes));
}

void longServers(benchmark::State& state) {
    constexpr std::size_t count = 5000;
    const auto& catalogue = catalogueOf(count);
    std::string text;
    for (const auto& server : catalogue.servers()) {
        text.append(text.empty() ? "[" : ",").append(TarnwickService::longServer(catalogue, server));
    }
    sameList(
        state, "5,000 long servers", withPadding(text + "]"), count,
        [](const Platform::Bytes& body) { return decodeServers(body, ServerJsonKind::long_); }, &longServersBySimdjson);
}

std::vector<Device> devicesByLibrary(const Platform::Bytes& body) {
    return Platform::JsonDecoder{}.decodeArray<Device>(body);
}

void devices(benchmark::State& state) {
    std::string text = "[";
    constexpr std::size_t count = 1000;
    for (std::size_t id = 1; id <= count; ++id) {
        text.append(id > 1 ? "," : "").append(R"({"id":")").append(std::to_string(id));
        text.append(
            R"(","token":"0123456789abcdef0123456789abcdef","machine_name":"desk","created":"2019-03-01 09:15:00",)"
            R"("consumer":{"name":"VPN for Mac","device_type":"mac","x":1},"extra":[1,2,3]})");
    }
    text.append("]");
    const auto body = withPadding(text);
    sameList(state, "1,000 devices", body, count, &devicesByLibrary, &devicesBySimdjson);
    const auto allocationsBefore = allocationCount();
    benchmark::DoNotOptimize(devicesByLibrary(body));
    note("devices: allocations each", "library",
         static_cast<double>(allocationCount() - allocationsBefore) / static_cast<double>(count));
}

BENCHMARK_CAPTURE(shortServerList, library, "library", &serversByLibrary)->Arg(10000)->Iterations(20);
BENCHMARK_CAPTURE(shortServerList, library, "library", &serversByLibrary)->Arg(100000)->Iterations(3);
BENCHMARK_CAPTURE(shortServerList, simdjsonByHand, "simdjson by hand", &serversBySimdjson)->Arg(10000)->Iterations(20);
BENCHMARK_CAPTURE(shortServerList, rapidJson, "RapidJSON", &serversByRapidJson)->Arg(10000)->Iterations(10);
BENCHMARK_CAPTURE(shortServerList, nlohmann, "nlohmann::json", &serversByNlohmann)->Arg(10000)->Iterations(3);
BENCHMARK(peakMemoryOfServers)->Iterations(1);
BENCHMARK(mainQueueHeld)->Arg(1000)->Arg(10000)->Arg(100000)->Iterations(5);
BENCHMARK(longServers)->Iterations(20);
BENCHMARK(devices)->Iterations(100);

}  // namespace
}  // namespace Benchmarks
