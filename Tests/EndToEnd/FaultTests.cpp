#include "ServiceFixture.hpp"

#include <chrono>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using TarnwickService::Cut;
using TarnwickService::Fault;

class Faults : public Testing::ServiceFixture {
protected:
    Testing::Received<Status> status() {
        return await<Status>([&](auto done) { api->getStatus(done); });
    }
};

TEST_F(Faults, AreWeatheredByRetrying) {
    const std::vector<std::pair<const char*, Fault>> rows = {
        {"cut before the answer", {.cut = Cut::beforeAnswer}},
        {"cut inside the header block", {.cut = Cut::insideHeader}},
        {"cut inside the body", {.cut = Cut::afterBodyBytes, .cutAfterBytes = 5}},
        {"a length that is too great", {.contentLength = 100000}},
    };
    for (const auto& [what, fault] : rows) {
        SCOPED_TRACE(what);
        // A fresh session: on a connection used before, libcurl sends once more by itself.
        use(sessionConfiguration());
        service.reset();
        auto three = fault;
        three.count = 3;
        service.faults().add(three);
        const auto before = queue->pausesAskedFor().size();
        EXPECT_TRUE(status().result);
        EXPECT_EQ(queue->pausesAskedFor().size() - before, 3U);
        EXPECT_EQ(service.counters().requests, 4U);
    }
}

TEST_F(Faults, EndInNotReachableAfterSixIdenticalAttempts) {
    service.faults().add({.count = 6, .cut = Cut::afterBodyBytes, .cutAfterBytes = 1});
    const auto received = await<void>([&](auto done) { api->createUser("bob", "pw", done); });
    EXPECT_EQ(received.error, ApiError{ResponseError::notReachable()});
    std::set<std::string> bodies;
    for (const auto& request : service.recordedRequests()) {
        bodies.insert(request.body);
    }
    EXPECT_EQ(service.recordedRequests().size(), 6U);
    EXPECT_EQ(bodies.size(), 1U);
}

TEST_F(Faults, OfAnswersWithAStatusAreTold) {
    const std::vector<std::pair<unsigned, ResponseError>> rows = {
        {400, ResponseError::badRequest()},
        {401, ResponseError::unauthorized()},
        {403, ResponseError::forbidden()},
        {404, ResponseError::notFound()},
        {418, ResponseError::genericError("teapot")},
        {500, ResponseError::genericError("teapot")},
        {503, ResponseError::genericError("teapot")},
        {300, ResponseError::genericError("teapot")},
    };
    for (const auto& [code, error] : rows) {
        SCOPED_TRACE(code);
        service.faults().add({.status = code, .body = "teapot"});
        EXPECT_EQ(status().error, ApiError{error});
    }
    EXPECT_TRUE(queue->pausesAskedFor().empty());
    service.faults().add({.status = 202, .body = "{}"});
    const auto accepted = status();
    EXPECT_TRUE(!accepted.result && !accepted.error);
}

TEST_F(Faults, StalledTransfersEndByTheIdleTimeout) {
    auto configuration = sessionConfiguration();
    configuration.idleTimeout = std::chrono::milliseconds{50};
    use(configuration);
    service.faults().add({.count = 6, .delay = std::chrono::hours{1}});
    EXPECT_EQ(status().error, ApiError{ResponseError::notReachable()});
    EXPECT_EQ(queue->pausesAskedFor().size(), 5U);
}

TEST_F(Faults, OfAServiceThatIsGoneAreNotReachable) {
    EXPECT_TRUE(status().result);
    service.stop();
    EXPECT_EQ(status().error, ApiError{ResponseError::notReachable()});
    EXPECT_FALSE(api->currentStatus());
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
