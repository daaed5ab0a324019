#include <Tarnwick_API/Backends/ApiVersion2.hpp>

#include "BackendFixture.hpp"

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Version2Backend = Testing::BackendFixture;

TEST_F(Version2Backend, HoldsItsSettingsAndDerivesNothingFromThem) {
    ApiVersion2 stub{std::nullopt, std::nullopt, Testing::installation};
    EXPECT_EQ(stub.consumerKey(), "");
    EXPECT_EQ(stub.consumerSecret(), "");
    EXPECT_EQ(stub.username(), "");
    EXPECT_EQ(stub.environment(), ApiEnvironment::live);
    const auto baseUrl = stub.baseUrl();
    EXPECT_TRUE(baseUrl.starts_with("https://") && baseUrl.ends_with("/v2")) << baseUrl;
    stub.setEnvironment(ApiEnvironment::dev);
    stub.setApiHost("h");
    EXPECT_EQ(stub.environment(), ApiEnvironment::dev);
    EXPECT_EQ(stub.apiHost(), "h");
    EXPECT_EQ(stub.baseUrl(), baseUrl);
}

TEST_F(Version2Backend, NeverSendsAndNeverCallsBack) {
    ApiVersion2 stub{"k", "s", Testing::installation};
    const auto unexpected = [](auto&&...) { ADD_FAILURE() << "called back"; };
    stub.login("u", "p", true, unexpected);
    stub.currentUser(unexpected);
    stub.logout(unexpected);
    stub.setToken("t", "s", unexpected);
    stub.getCountries(1, 1.0, 2.0, unexpected);
    stub.getCountries(unexpected);
    stub.getServers(1, "DE", 1.0, 2.0, unexpected);
    stub.getServer(1, unexpected);
    stub.getCandidateServers(1, "DE", 2, unexpected);
    stub.updateUser(UserField::email, "e", unexpected);
    stub.createUser("u", "p", unexpected);
    stub.getStatus(unexpected);
    stub.getAuthToken(unexpected);
    stub.getDevices(unexpected);
    stub.getDefaultFavorites(1, unexpected);
    stub.sendRequest(*Platform::Url::fromString("https://h/"), {}, Platform::ParameterEncoding::url, {},
                     Platform::HttpMethod::get, 0, unexpected);
    queue->runAll();
    EXPECT_TRUE(session->requests.empty());
}

}  // namespace
}  // namespace Tarnwick_API
