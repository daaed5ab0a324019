#include "ServiceFixture.hpp"

#include <algorithm>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

class Session : public Testing::ServiceFixture {
protected:
    /// The strict service refuses whatever deviates from the wire format, so an operation that works was sent right.
    void expectNothingRefused() { EXPECT_EQ(service.counters().refusals, 0U) << service.counters().lastRefusal; }
};

TEST_F(Session, OfAnAccountFromItsCreationToSigningOut) {
    EXPECT_FALSE(
        await<void>([&](auto done) { api->createUser("bob@example.test", "p/q\"r\\", std::move(done)); }).error);
    const auto signedIn = signIn("bob@example.test", "p/q\"r\\");
    ASSERT_TRUE(signedIn.result) << service.counters().lastRefusal;
    EXPECT_EQ(signedIn.result->username, "bob@example.test");
    EXPECT_EQ(api->currentUser()->username, "bob@example.test");
    const auto token = api->username();
    EXPECT_EQ(Keychain::getLoginData("end-to-end")->username, token);
    ASSERT_TRUE(service.accounts().findSession(token));

    const auto status = getStatus();
    ASSERT_TRUE(status.result);
    EXPECT_EQ(status.result->ip, service.configuration().callerAddress);
    EXPECT_EQ(api->currentStatus()->statusUpdateInterval, 600);

    const auto authToken = await<std::string>([&](auto done) { api->getAuthToken(std::move(done)); });
    EXPECT_FALSE(authToken.result.value_or("").empty());

    EXPECT_FALSE(await<void>([&](auto done) { api->updateUser(UserField::email, "b@b", std::move(done)); }).error);
    EXPECT_EQ(service.accounts().findByName("bob@example.test")->email, "b@b");
    EXPECT_FALSE(await<void>([&](auto done) { api->updateUser(UserField::username, "rob", std::move(done)); }).error);
    EXPECT_EQ(await<User>([&](auto done) { api->getCurrentUser(std::move(done)); }).result->username, "rob");

    EXPECT_FALSE(await<void>([&](auto done) { api->logout(std::move(done)); }).error);
    EXPECT_FALSE(service.accounts().findSession(token));
    EXPECT_FALSE(api->currentUser());
    EXPECT_EQ(Keychain::getLoginData("end-to-end")->username, "wipe");
    expectNothingRefused();

    const auto refused = await<User>([&](auto done) { api->setToken(token, "secret", std::move(done)); });
    EXPECT_TRUE(refused.error);
    EXPECT_EQ(api->username(), "");
}

TEST_F(Session, ReadsTheCatalogueAndTheDevices) {
    createAccount("bob", "pw");
    ASSERT_TRUE(signIn("bob", "pw").result) << service.counters().lastRefusal;
    const auto countries = await<std::vector<Country>>(
        [&](auto done) { api->getCountries(ServerProfile::streaming, 52.52, 13.405, std::move(done)); });
    ASSERT_TRUE(countries.result && !countries.result->empty()) << service.counters().lastRefusal;
    EXPECT_TRUE(std::ranges::all_of(*countries.result, [](const Country& country) {
        return country.distance && country.serviceId && !country.localizedCountryName().empty();
    }));
    const auto& nearest = countries.result->front();

    const auto servers = await<std::vector<Server>>(
        [&](auto done) { api->getServers(nearest.countryCode, 52.52, 13.405, std::move(done)); });
    ASSERT_TRUE(servers.result && !servers.result->empty());
    EXPECT_TRUE(
        std::ranges::is_sorted(*servers.result, {}, [](const Server& server) { return server.location.distance; }));

    const auto candidates = await<std::vector<Server>>([&](auto done) {
        api->getCandidateServers(nearest.countryCode, ServerProfile::streaming, nearest.serviceId, std::move(done));
    });
    EXPECT_TRUE(candidates.result && !candidates.result->empty());
    const auto anywhere = await<std::vector<Server>>([&](auto done) {
        api->getCandidateServers(std::nullopt, ServerProfile::general, std::nullopt, std::move(done));
    });
    EXPECT_TRUE(anywhere.result && !anywhere.result->empty());

    const auto& first = servers.result->front();
    const auto server = await<Server>([&](auto done) { api->getServer(first.id, std::move(done)); });
    ASSERT_TRUE(server.result);
    EXPECT_EQ(server.result->ip, first.ip);
    EXPECT_FALSE(server.result->configurations.empty());

    const auto favorites =
        await<std::vector<FavoriteEntry>>([&](auto done) { api->getDefaultFavorites(std::move(done)); });
    ASSERT_TRUE(favorites.result);
    EXPECT_TRUE(std::ranges::any_of(*favorites.result, std::holds_alternative<Server, Server, Country>));
    EXPECT_TRUE(std::ranges::any_of(*favorites.result, std::holds_alternative<Country, Server, Country>));

    const auto devices = await<std::vector<Device>>([&](auto done) { api->getDevices(std::move(done)); });
    ASSERT_TRUE(devices.result && devices.result->size() == 1);
    EXPECT_EQ(devices.result->front().token, api->username());
    expectNothingRefused();
    const auto missing = await<Server>([&](auto done) { api->getServer(999999999, std::move(done)); });
    EXPECT_EQ(missing.error, ApiError{ResponseError::notFound()});
}

TEST_F(Session, SendsCallsThatNoOperationSends) {
    createAccount("bob", "pw");
    ASSERT_TRUE(signIn("bob", "pw").result);
    const auto backend = std::dynamic_pointer_cast<ApiVersion1>(api->api());
    const auto statusOf = [&](const ApiCallV1& call) {
        std::optional<std::int64_t> status;
        backend->dispatchCall(call, [&](const auto& /*body*/, const ApiResult& result) { status = result.status; });
        runUntil([&] { return status.has_value(); });
        return *status;
    };
    EXPECT_EQ(statusOf(AddDeviceCallV1{backend->apiBase()}), 200) << service.counters().lastRefusal;
    EXPECT_EQ(await<std::vector<Device>>([&](auto done) { api->getDevices(std::move(done)); }).result->size(), 2U);
    // It has no path, and the service has nothing there.
    EXPECT_EQ(statusOf(RemoveDeviceCallV1{backend->apiBase()}), 404);
}

TEST_F(Session, TellsRefusalsApart) {
    createAccount("bob", "pw");
    ASSERT_TRUE(
        service.accounts().create({.username = "old", .password = "pw", .email = "", .migrationRequired = true}));
    EXPECT_EQ(await<void>([&](auto done) { api->createUser("bob", "x", std::move(done)); }).error,
              ApiError{SignupError{SignupError::usernameAlreadyExists}});
    EXPECT_EQ(signIn("bob", "wrong").error, ApiError{ResponseError::unauthorized()});
    EXPECT_EQ(signIn("old", "pw").error, ApiError{LoginError{LoginError::qvUserMigrationRequired}});
    EXPECT_FALSE(Keychain::hasLoginData("end-to-end"));
    EXPECT_TRUE(await<User>([&](auto done) { api->login("old", "pw", true, std::move(done)); }).result)
        << service.counters().lastRefusal;

    const auto loginWith = [&](const std::string& key) {
        api->setConsumerKey(key);
        api->setVersion(ApiVersion::v1);
        return signIn("bob", "pw").error;
    };
    EXPECT_EQ(loginWith("unknown"), ApiError{LoginError{LoginError::invalidConsumerKey}});
    EXPECT_EQ(loginWith(""), ApiError{LoginError{LoginError::consumerKeyMissing}});
    EXPECT_EQ(loginWith(service.configuration().restrictedConsumerKey),
              ApiError{LoginError{LoginError::invalidConsumerRights}});
}

TEST_F(Session, InFallbackModeGoesToTheAddressAndStillNamesTheHost) {
    api->setUseFallbackIp(true);
    const auto status = getStatus();
    ASSERT_TRUE(status.result) << service.counters().lastRefusal;
    EXPECT_EQ(service.counters().requests, 1U);
    const auto recorded = service.recordedRequests().at(0);
    EXPECT_TRUE(std::ranges::any_of(recorded.headers, [&](const auto& header) {
        return header == std::pair<std::string, std::string>{"Host", service.apiHost()};
    }));
    // The address of the other environments is not exempt from the check of the certificate's name.
    api->setEnvironment(ApiEnvironment::dev);
    auto configuration = sessionConfiguration();
    configuration.connectTo.push_back(api->fallbackIp() + ":443:127.0.0.1:" + std::to_string(service.port()));
    use(configuration);
    EXPECT_EQ(getStatus().error, ApiError{ResponseError::notReachable()});
    EXPECT_EQ(service.counters().requests, 1U);
}

TEST_F(Session, FacadeMayBeDroppedWithRequestsOnTheirWayAndInsideItsCompletion) {
    createAccount("bob", "pw");
    const std::weak_ptr<TarnwickApi> observed = api;
    int completed = 0;
    api->login("bob", "pw", false, [&](const auto& user, const auto& /*error*/) {
        EXPECT_TRUE(user);
        ++completed;
    });
    for (int index = 0; index < 20; ++index) {
        api->getStatus([&](const auto& status, const auto& /*error*/) {
            EXPECT_TRUE(status);
            ++completed;
            api.reset();
        });
    }
    api.reset();
    runUntil([&] { return completed == 21; });
    EXPECT_TRUE(observed.expired());
}

}  // namespace
}  // namespace Tarnwick_API
