#include "ServiceFixture.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

class BadAnswers : public Testing::ServiceFixture {
protected:
    Testing::Received<Status> statusAnsweredWith(std::string body) {
        service.faults().add({.body = std::move(body), .contentType = "application/json"});
        return await<Status>([&](auto done) { api->getStatus(done); });
    }
};

TEST_F(BadAnswers, AreNoDataAndNoError) {
    const std::string good = R"({"realip":"192.0.2.1","required_client_versions":{"mac_7":"7.1"})";
    const std::vector<std::pair<const char*, std::string>> rows = {
        {"empty", ""},
        {"truncated", good},
        {"garbage", std::string("\x16\x03\x01\x00<html>", 10)},
        {"wrong type", R"(["realip"])"},
        {"not UTF-8", good + ",\"x\":\"\xFF\"}"},
        {"too deep", std::string(1000000, '[')},
        {"closed but too deep", std::string(600, '[') + std::string(600, ']')},
        {"NUL inside", good + "}" + std::string(1, '\0') + "{}"},
    };
    for (const auto& [what, body] : rows) {
        SCOPED_TRACE(what);
        const auto received = statusAnsweredWith(body);
        EXPECT_TRUE(!received.result && !received.error);
    }
    EXPECT_TRUE(statusAnsweredWith(good + "}").result);
    EXPECT_TRUE(statusAnsweredWith("\xEF\xBB\xBF" + good + ",\"big\":123456789012345678901234567890}").result);
}

TEST_F(BadAnswers, ThatAreTooLargeAreGivenUp) {
    auto configuration = sessionConfiguration();
    configuration.maximumBodySize = 1000;
    use(configuration);
    service.faults().add({.count = 6, .body = std::string(1001, ' ')});
    EXPECT_EQ(await<Status>([&](auto done) { api->getStatus(done); }).error, ApiError{ResponseError::notReachable()});
    service.faults().add({.count = 1, .body = std::string(1000, 'x')});
    EXPECT_EQ(await<Status>([&](auto done) { api->getStatus(done); }).error, std::nullopt);
}

TEST_F(BadAnswers, HeadersCannotBeInjected) {
    api->setConsumerKey("key\r\nX-Injected: yes");
    api->setVersion(ApiVersion::v1);
    EXPECT_EQ(await<Status>([&](auto done) { api->getStatus(done); }).error, ApiError{ResponseError::notReachable()});
    EXPECT_EQ(service.counters().requests, 0U);
}

}  // namespace
}  // namespace Tarnwick_API
