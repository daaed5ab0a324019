#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include "Api/CatalogueRecords.hpp"
#include "Configuration.hpp"
#include "CurlPeers.hpp"
#include "Measurements.hpp"
#include "Model/Catalogue.hpp"
#include "ServerListPeers.hpp"
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

ServiceTarget target(bool isHttp2) {
    const auto& service = ServiceProcess::shared();
    return {isHttp2 ? service.http2Port() : service.port(), isHttp2};
}

std::string protocol(bool isHttp2) {
    return isHttp2 ? "HTTP/2" : "HTTP/1.1";
}

/// The library as an application uses it, with a session of its own.
class Library {
public:
    explicit Library(ServiceTarget target) {
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

    /// Asks for a list of servers; how many came.
    std::size_t requestServers() {
        std::optional<std::size_t> count;
        api_->getServers("DE", std::nullopt, std::nullopt,
                         [&](const std::optional<std::vector<Server>>& servers, const std::optional<ApiError>&) {
                             count = servers ? servers->size() : 0;
                         });
        queue_->runUntil([&] { return count.has_value(); });
        return *count;
    }

private:
    std::shared_ptr<Platform::BuiltInMainQueue> queue_ = std::make_shared<Platform::BuiltInMainQueue>();
    std::shared_ptr<TarnwickApi> api_;
};

/// The same on plain libcurl, with the very requests that the library sends.
class Peer {
public:
    explicit Peer(ServiceTarget target) : client_{target} {}

    std::size_t requestStatus(std::size_t count) {
        for (std::size_t index = 0; index < count; ++index) {
            client_.start("status" + defaults_);
        }
        std::size_t succeeded = 0;
        for (std::size_t index = 0; index < count; ++index) {
            succeeded += client_.wait().status == ok ? 1U : 0U;
        }
        return succeeded;
    }

    std::size_t requestServers() {
        client_.start("servers" + defaults_ + "&filter=14&filter_country=DE");
        return serversBySimdjson(client_.wait().body).size();
    }

private:
    static constexpr long ok = 200;
    std::string defaults_ = "?language=en&os=mac&partnersId=7&region=US&version=7.x";
    CurlClient client_;
};

/// What a piece of work takes, as the median of its times and as processor time of the whole process.
class Work {
public:
    Work(std::string metric, const char* candidate) : metric_{std::move(metric)}, candidate_{candidate} {}

    /// Returns whether `request` succeeded `count` times.
    template <typename Request>
    [[nodiscard]] bool repeat(int count, Request request) {
        const auto cpuBefore = processCpuTime();
        for (int index = 0; index < count; ++index) {
            const auto begin = Clock::now();
            if (!request()) {
                return false;
            }
            times_.push_back(microseconds(Clock::now() - begin));
        }
        cpuTimes_.push_back(microseconds(processCpuTime() - cpuBefore) / count);
        return true;
    }

    void note() const {
        Benchmarks::note(metric_ + ": p50 us", candidate_, median(times_));
        Benchmarks::note(metric_ + ": CPU us", candidate_, median(cpuTimes_));
    }

private:
    std::string metric_;
    const char* candidate_;
    std::vector<double> times_;
    std::vector<double> cpuTimes_;
};

/// Candidates take turns every few milliseconds, so that each finds the machine as the other does.
template <typename RequestOfLibrary, typename RequestOfPeer>
void takeTurns(benchmark::State& state, const std::string& metric, int requests, RequestOfLibrary requestOfLibrary,
               RequestOfPeer requestOfPeer) {
    constexpr int rounds = 40;
    for ([[maybe_unused]] auto iteration : state) {
        Work library{metric, "library"};
        Work peer{metric, "libcurl"};
        for (int round = 0; round < rounds; ++round) {
            if (!library.repeat(requests, requestOfLibrary) || !peer.repeat(requests, requestOfPeer)) {
                state.SkipWithError("answers are missing");
                return;
            }
        }
        library.note();
        peer.note();
    }
}

void oneStatus(benchmark::State& state) {
    const bool isHttp2 = state.range(0) != 0;
    Library library{target(isHttp2)};
    Peer peer{target(isHttp2)};
    takeTurns(
        state, "one status request, " + protocol(isHttp2), 50, [&] { return library.requestStatus(1) == 1; },
        [&] { return peer.requestStatus(1) == 1; });
}

void oneCatalogue(benchmark::State& state) {
    const bool isHttp2 = state.range(0) != 0;
    constexpr std::size_t count = 4000;
    const TarnwickService::Catalogue catalogue{
        TarnwickService::readPlaces(TarnwickService::Configuration{}.zoneDirectory), count};
    ServiceProcess::shared().serve("servers", TarnwickService::shortServerList(catalogue, catalogue.list({})));
    Library library{target(isHttp2)};
    Peer peer{target(isHttp2)};
    takeTurns(
        state, "catalogue of 1 MB, " + protocol(isHttp2), 3, [&] { return library.requestServers() == count; },
        [&] { return peer.requestServers() == count; });
}

/// Only who goes first grows the process.
template <typename Client>
bool manyAtOnce(Client& client, const std::string& protocol, const char* candidate, bool isFirst) {
    constexpr std::size_t count = 10000;
    constexpr double megabyte = 1e6;
    const PeakMemory memory;
    const auto begin = Clock::now();
    if (client.requestStatus(count) != count) {
        return false;
    }
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    note("10,000 at once, " + protocol + ": requests/s", candidate, static_cast<double>(count) / seconds.count());
    if (isFirst) {
        note("10,000 at once, " + protocol + ": MB", candidate, static_cast<double>(memory.growth()) / megabyte);
    }
    return true;
}

void statusesAtOnce(benchmark::State& state) {
    const bool isHttp2 = state.range(0) != 0;
    const bool isLibraryFirst = state.range(1) != 0;
    Library library{target(isHttp2)};
    Peer peer{target(isHttp2)};
    const auto byLibrary = [&] { return manyAtOnce(library, protocol(isHttp2), "library", isLibraryFirst); };
    const auto byPeer = [&] { return manyAtOnce(peer, protocol(isHttp2), "libcurl", !isLibraryFirst); };
    for ([[maybe_unused]] auto iteration : state) {
        // The first request of each opens the connection that tells whether it takes many.
        if (library.requestStatus(1) != 1 || peer.requestStatus(1) != 1 ||
            !(isLibraryFirst ? byLibrary() && byPeer() : byPeer() && byLibrary())) {
            state.SkipWithError("answers are missing");
            return;
        }
    }
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

BENCHMARK(oneStatus)->ArgName("http2")->Arg(0)->Arg(1)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(oneCatalogue)->ArgName("http2")->Arg(0)->Arg(1)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(statusesAtOnce)
    ->ArgNames({"http2", "libraryFirst"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(reconnectByLibrary)->Iterations(200)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Benchmarks
