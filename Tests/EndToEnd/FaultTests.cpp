#include "ServiceFixture.hpp"

#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using TarnwickService::Cut;
using TarnwickService::Fault;

using Faults = Testing::ServiceFixture;

TEST_F(Faults, AreWeatheredByRetrying) {
    const std::pair<const char*, Fault> rows[] = {
        {"cut before the answer", {.count = 3, .cut = Cut::beforeAnswer}},
        {"cut inside the header block", {.count = 3, .cut = Cut::insideHeader}},
        {"cut inside the body", {.count = 3, .cut = Cut::afterBodyBytes, .cutAfterBytes = 5}},
        {"a length that is too great", {.count = 3, .contentLength = 100000}},
    };
    for (const auto& [what, fault] : rows) {
        SCOPED_TRACE(what);
        // A fresh session: on a connection used before, libcurl sends once more by itself.
        use(sessionConfiguration());
        service.reset();
        service.faults().add(fault);
        const auto before = queue->pausesAskedFor().size();
        EXPECT_TRUE(getStatus().result);
        EXPECT_EQ(queue->pausesAskedFor().size() - before, 3U);
        EXPECT_EQ(service.counters().requests, 4U);
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
    while (service.counters().requests == 0) {
        std::this_thread::yield();
    }
    use(sessionConfiguration());
    runUntil([&] { return completed == 1; });
}

}  // namespace
}  // namespace Tarnwick_API
