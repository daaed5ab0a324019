#include <Tarnwick_API/Backends/ApiVersion2.hpp>

#include "BackendFixture.hpp"

#include "DeviceRegistration.hpp"
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Version2Backend = Testing::BackendFixture;

TEST_F(Version2Backend, PreparesTheRegistrationOfTheDevice) {
    const auto baseUrl = ApiVersion2{std::nullopt, std::nullopt, Testing::installation}.baseUrl();
    EXPECT_TRUE(baseUrl.starts_with("https://") && baseUrl.ends_with("/v2")) << baseUrl;
    const auto registration = DeviceRegistration::prepare(baseUrl, "k", Testing::installation, "u", "p");
    ASSERT_TRUE(registration);
    const Platform::HttpRequest request{Platform::HttpMethod::post, registration->url, registration->parameters,
                                        registration->encoding, registration->headers};
    EXPECT_EQ(request.url().absoluteString(), baseUrl + "/my/devices");
    EXPECT_EQ(request.body(), R"({"deviceName":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","password":"p","userName":"u"})");
    EXPECT_EQ(request.headers(),
              (Platform::HttpHeaders{
                  {"Accept", "application/json"}, {"Content-Type", "application/json"}, {"X-APP-KEY", "k"}}));
    EXPECT_FALSE(DeviceRegistration::prepare("no URL", "k", Testing::installation, "u", "p"));
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
