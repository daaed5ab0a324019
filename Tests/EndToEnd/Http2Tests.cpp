#include "Certificates/Certificates.hpp"
#include "Http2Proxy.hpp"
#include "ServiceFixture.hpp"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

/// The service behind a proxy that speaks HTTP/2 with the client.
class OverHttp2 : public Testing::ServiceFixture {
protected:
    explicit OverHttp2(int streams = 100) {
        const auto authority = TarnwickService::CertificateAuthority::create();
        std::ofstream{trustedRoots} << authority.certificatePem();
        proxy_.emplace(
            folder.path(), authority.issue({.dnsNames = {"localhost"}, .ipAddresses = {}}),
            std::vector<Http2Proxy::Backend>{{"localhost", service.port()}},
            std::vector<std::string>{"--accesslog-file=" + accessLog_.string(), "--accesslog-format=$remote_port",
                                     "--frontend-http2-max-concurrent-streams=" + std::to_string(streams)});
        auto configuration = sessionConfiguration();
        configuration.connectTo = {service.apiHost() + ":127.0.0.1:" + std::to_string(proxy_->port())};
        use(configuration);
    }

    /// Sends so many requests at once, and counts those that succeed.
    int getStatuses(int count) {
        int succeeded = 0;
        int completed = 0;
        for (int index = 0; index < count; ++index) {
            api->getStatus([&](const auto& status, const auto& /*error*/) {
                succeeded += status ? 1 : 0;
                ++completed;
            });
        }
        runUntil([&] { return completed == count; });
        return succeeded;
    }

    /// How many connections have carried requests.
    [[nodiscard]] std::size_t connections() const {
        std::ifstream log{accessLog_};
        return std::set<std::string>{std::istream_iterator<std::string>{log}, {}}.size();
    }

private:
    std::filesystem::path accessLog_ = folder.path() / "access.log";
    std::optional<Http2Proxy> proxy_;
};

class OverHttp2WithOneRequestAtATime : public OverHttp2 {
protected:
    OverHttp2WithOneRequestAtATime() : OverHttp2{1} {}
};

TEST_F(OverHttp2, ManyRequestsShareOneConnectionAndNameTheHost) {
    constexpr int count = 300;
    ASSERT_TRUE(getStatus().result) << service.counters().lastRefusal;
    EXPECT_EQ(getStatuses(count), count);
    EXPECT_EQ(connections(), 1U);
    createAccount("bob", "pw");
    EXPECT_TRUE(signIn("bob", "pw").result);
    EXPECT_TRUE(await<std::vector<Device>>([&](auto done) { api->getDevices(std::move(done)); }).result);
    EXPECT_EQ(service.counters().refusals, 0U) << service.counters().lastRefusal;
    EXPECT_EQ(queue->pausesAskedFor().size(), 0U);
}

TEST_F(OverHttp2, AStoppedRequestLeavesTheConnectionToTheOthers) {
    ASSERT_TRUE(getStatus().result);
    service.faults().add({.count = 1, .delay = std::chrono::hours{1}});
    const Platform::StopSource source;
    bool isStopped = false;
    api->getStatus().stoppedBy(source.token()).then([&](const Outcome<Status>& outcome) {
        isStopped = outcome.failure().as<CancellationError>() != nullptr;
    });
    while (service.counters().requests < 2) {
        std::this_thread::yield();
    }
    constexpr int count = 50;
    int succeeded = 0;
    for (int index = 0; index < count; ++index) {
        api->getStatus().then([&](const Outcome<Status>& outcome) {
            succeeded += outcome ? 1 : 0;
            source.stop();
        });
    }
    runUntil([&] { return isStopped && succeeded == count; });
    EXPECT_EQ(connections(), 1U);
    EXPECT_EQ(queue->pausesAskedFor().size(), 0U);
}

TEST_F(OverHttp2WithOneRequestAtATime, ConnectionsAreFew) {
    constexpr int count = 200;
    EXPECT_EQ(getStatuses(count), count);
    // Six at once; those with a request that the server had sent back are closed and opened again.
    constexpr std::size_t most = 18;
    EXPECT_LE(connections(), most);
}

}  // namespace
}  // namespace Tarnwick_API
