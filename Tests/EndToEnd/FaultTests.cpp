#include "ServiceFixture.hpp"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

class Faults : public Testing::ServiceFixture {
protected:
    void waitForARequest() {
        while (service.counters().requests == 0) {
            std::this_thread::yield();
        }
    }
};

/// What a computer with a network says of every place.
class AlwaysReachable final : public Platform::Reachability {
    [[nodiscard]] bool isReachable(std::string_view /*urlText*/) const override { return true; }
};

TEST_F(Faults, AreToldWithTheirReasons) {
    const auto authority = TarnwickService::CertificateAuthority::create();
    const auto otherRoots = folder.path() / "others.pem";
    std::ofstream{otherRoots} << authority.certificatePem();
    TarnwickService::Service expired{
        {.certificate = authority.issue({.dnsNames = {"localhost"}, .validUntil = std::chrono::seconds{-60}})}};
    expired.start();
    const auto portOf = [](const auto& each) { return "127.0.0.1:" + std::to_string(each.port()); };
    using Kind = Platform::HttpError::Kind;
    struct Row {
        const char* what = nullptr;
        Kind kind = Kind::other;
        std::string place;
        std::filesystem::path roots;
        std::int64_t attempts = 6;
    };
    const Row rows[] = {
        {"expired certificate", Kind::certificate, portOf(expired), otherRoots},
        {"wrong authority", Kind::certificate, portOf(service), otherRoots},
        {"refused port", Kind::cannotConnect, "127.0.0.1:1", trustedRoots},
        {"unresolved name", Kind::unresolvedHost, "nowhere.invalid:443", trustedRoots},
        {"body over the limit", Kind::tooLarge, portOf(service), trustedRoots},
        {"no route", Kind::cannotConnect, "255.255.255.255:443", trustedRoots, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        auto configuration = sessionConfiguration();
        configuration.trustedRootsFile = row.roots;
        configuration.connectTo = {service.apiHost() + ":" + row.place};
        configuration.maximumBodySize = 10;
        if (row.attempts > 1) {
            configuration.reachability = std::make_shared<AlwaysReachable>();
        }
        use(configuration);
        std::vector<std::string> log;
        const Platform::ScopedProcessValues logging;
        Platform::Logging::setSink([&](const Platform::Logging::Entry& entry) { log.emplace_back(entry.message); });
        std::int64_t told = 0;
        const auto observation = api->observeAttempts([&](const RequestAttempt& attempt) {
            EXPECT_EQ(attempt.number, ++told);
            EXPECT_EQ(attempt.anotherFollows, told < row.attempts);
            EXPECT_EQ(attempt.host, "localhost");
            ASSERT_TRUE(attempt.failure);
            EXPECT_STREQ(name(attempt.failure->kind), name(row.kind));
            EXPECT_NE(attempt.failure->description, "");
            const auto entry = row.attempts == 1 ? "No route to 255.255.255.255"
                                                 : std::string{"No answer from localhost ("} + name(row.kind) +
                                                       "): " + attempt.failure->description;
            EXPECT_EQ(std::count(log.begin(), log.end(), entry), told);
        });
        EXPECT_EQ(getStatus().error, ResponseError::notReachable());
        EXPECT_EQ(told, row.attempts);
    }
}

TEST_F(Faults, OfBodiesAreNoDataAndNoError) {
    const std::string good = R"({"realip":"192.0.2.1","required_client_versions":{"mac_7":"7.1"})";
    const auto answered = [&](std::string body) {
        service.faults().add({.body = std::move(body), .contentType = "application/json"});
        return getStatus();
    };
    for (const auto& body :
         {std::string{}, good, std::string{"\x16\x03\x01\x00<html>", 10}, std::string{"[\"realip\"]"},
          std::string(1'000'000, '['), good + "}" + std::string(1, '\0') + "{}"}) {
        const auto received = answered(body);
        EXPECT_TRUE(!received.result && !received.error) << body.substr(0, 100);
    }
    EXPECT_TRUE(answered("\xEF\xBB\xBF" + good + ",\"big\":123456789012345678901234567890}").result);
}

TEST_F(Faults, SwitchingTheSessionLetsRequestsGoOnOnTheNewOne) {
    service.faults().add({.count = 1, .delay = std::chrono::hours{1}});
    int completed = 0;
    api->getStatus([&](const auto& status, const auto& /*error*/) {
        EXPECT_TRUE(status);
        ++completed;
    });
    waitForARequest();
    use(sessionConfiguration());
    runUntil([&] { return completed == 1; });
}

TEST_F(Faults, AreNotWaitedForByWhoStops) {
    service.faults().add({.count = 1, .delay = std::chrono::hours{1}});
    const Platform::StopSource source;
    std::vector<std::optional<ApiError>> errors;
    api->getStatus().stoppedBy(source.token()).start([&](const auto& /*status*/, const auto& error) {
        errors.push_back(error);
    });
    waitForARequest();
    source.stop();
    runUntil([&] { return !errors.empty(); });
    EXPECT_TRUE(getStatus().result);
    EXPECT_EQ(errors, std::vector{std::optional{ApiError{CancellationError{Platform::StopReason::stopped}}}});
    EXPECT_EQ(service.counters().requests, 2U);
    EXPECT_TRUE(queue->pausesAskedFor().empty());
}

}  // namespace
}  // namespace Tarnwick_API
