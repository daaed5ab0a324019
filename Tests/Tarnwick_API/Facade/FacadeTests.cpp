#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Backends/ApiVersion2.hpp>
#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Application/NotificationCenter.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "BackendFixture.hpp"

#include <cmath>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using ::testing::ElementsAre;

static_assert(!std::is_default_constructible_v<TarnwickApi>);

const FilterIds filters{1, 2, 3, 4, 5, 6, 7, 8, 9};

std::shared_ptr<TarnwickApi> makeFacade(ApiVersion version = ApiVersion::v1) {
    return TarnwickApi::create(version, "key", "secret", 5, Platform::Uuid::random(), "service", filters,
                               ApiUrl{"live", "beta", "dev", "staging"});
}

TEST(ApiUrls, NameOneHostPerEnvironment) {
    const ApiUrl url{"l", "b", "d:8443", ""};
    EXPECT_EQ(url.baseUrl(ApiEnvironment::live), "https://l/vb");
    EXPECT_EQ(url.baseUrl(ApiEnvironment::beta), "https://b/vb");
    EXPECT_EQ(url.baseUrl(ApiEnvironment::dev), "https://d:8443/vb");
    EXPECT_EQ(url.baseUrl(ApiEnvironment::staging), "https:///vb");
}

TEST(ApiUrls, SayWhatIsWrongWithAHostBeforeTheFirstRequest) {
    const std::pair<const char*, const char*> rows[] = {
        {"api.example.com", ""},
        {"localhost:8443", ""},
        {"[::1]:8443", ""},
        {"", "the base URL \"https:///vb\" names no host"},
        {":8443", "the base URL \"https://:8443/vb\" names no host"},
        {"my host", "the base URL \"https://my host/vb\" is no URL"},
        {"a.test/v1", "the base URL \"https://a.test/v1/vb\" has more in it than a host and a port"},
        {"me@a.test", "the base URL \"https://me@a.test/vb\" has more in it than a host and a port"},
        {"a.test:https", "the base URL \"https://a.test:https/vb\" has more in it than a host and a port"},
        {"a.test?", "the base URL \"https://a.test?/vb\" has more in it than a host and a port"},
    };
    for (const auto& [host, fault] : rows) {
        EXPECT_EQ(ApiUrl{{.dev = host}}.fault(ApiEnvironment::dev).value_or(""), fault);
    }
    EXPECT_DEATH(
        {
            const auto api = TarnwickApi::create({.uuid = Platform::Uuid::random(), .apiUrl = {.live = "my host"}});
            api->getStatus({});
        },
        "Tarnwick_API: the base URL \"https://my host/vb\" is no URL");
}

TEST(Facade, SaysWhatItsSettingsLack) {
    const TarnwickApiSettings good{.consumerKey = "key",
                                   .consumerSecret = "secret",
                                   .partnersId = 5,
                                   .uuid = Platform::Uuid::random(),
                                   .keychainService = "service",
                                   .apiUrl = {.live = "live"}};
    EXPECT_THAT(good.faults(), testing::IsEmpty());
    const struct {
        std::function<void(TarnwickApiSettings&)> forget;
        std::string named;
    } rows[] = {
        {[](auto& settings) { settings.consumerKey.clear(); }, "consumerKey"},
        {[](auto& settings) { settings.consumerSecret.clear(); }, "consumerSecret"},
        {[](auto& settings) { settings.partnersId = 0; }, "partnersId"},
        {[](auto& settings) { settings.keychainService.clear(); }, "keychainService"},
        {[](auto& settings) { settings.environment = ApiEnvironment::beta; }, "apiUrl"},
        {[](auto& settings) { settings.retrySpread.share = 1.5; }, "retrySpread"},
        {[](auto& settings) { settings.retrySpread.share = std::nan(""); }, "retrySpread"},
    };
    std::vector<std::string> told;
    const Platform::ScopedProcessValues scope;
    Platform::Logging::setSink([&](const auto& entry) { told.emplace_back(entry.message); });
    for (const auto& row : rows) {
        auto settings = good;
        row.forget(settings);
        EXPECT_THAT(settings.faults(), testing::ElementsAre(testing::HasSubstr(row.named)));
        told.clear();
        static_cast<void>(TarnwickApi::create(settings));
        EXPECT_THAT(told, testing::ElementsAre("Settings: " + settings.faults().front()));
    }
}

TEST(Facade, IsMadeOfSettingsByName) {
    const auto uuid = Platform::Uuid::random();
    const auto facade = TarnwickApi::create({.consumerKey = "key",
                                             .consumerSecret = "secret",
                                             .partnersId = 5,
                                             .uuid = uuid,
                                             .keychainService = "service",
                                             .filterIds = {.streamingCountriesAll = 32, .defaultFavorites = 41},
                                             .apiUrl = {.live = "live", .beta = "beta"},
                                             .environment = ApiEnvironment::beta,
                                             .useFallbackIp = true});
    const auto& made = dynamic_cast<const ApiVersion1&>(*facade->api());
    EXPECT_EQ(made.consumerKey() + made.consumerSecret() + made.keychainTokenService(), "keysecretservice");
    EXPECT_EQ(made.partnersId(), 5);
    EXPECT_EQ(made.uuid(), uuid);
    EXPECT_EQ(made.apiHost(), "beta");
    EXPECT_EQ(facade->environment(), ApiEnvironment::beta);
    EXPECT_TRUE(made.useFallbackIp());
    EXPECT_EQ(facade->filters().getCountryFilterId(ServerProfile::streaming), 32);
    EXPECT_EQ(facade->filters().defaultFavorites(), 41);
    EXPECT_EQ(facade->filters().generalCountriesAll(), 0);
    EXPECT_THROW(facade->setApi(nullptr), std::invalid_argument);
}

#ifndef NDEBUG
TEST(FacadeDeathTest, NoticesUseByTwoThreadsAtOnce) {
    EXPECT_DEATH(
        {
            const auto facade = makeFacade();
            const auto meanwhile = Platform::NotificationCenter::defaultCenter().addObserver(
                "DidLogout",
                [&](const auto&) { std::thread{[&] { static_cast<void>(facade->currentUser()); }}.join(); });
            facade->logout({});
        },
        "used by two threads at once, here for currentUser, there for logout");
}

TEST(Facade, MayBeUsedByOneThreadAfterAnother) {
    const auto facade = makeFacade();
    facade->logout({});
    std::thread{[&] { facade->logout({}); }}.join();
}
#endif

TEST(Facade, ForwardsEnvironmentAndFallbackModeAtOnce) {
    const auto facade = makeFacade();
    EXPECT_EQ(facade->environment(), ApiEnvironment::live);
    EXPECT_EQ(facade->baseUrl(), "https://live/vb");
    facade->setEnvironment(ApiEnvironment::staging);
    EXPECT_EQ(facade->apiHost(), "staging");
    const auto stagingAddress = facade->fallbackIp();
    facade->setUseFallbackIp(true);
    EXPECT_EQ(facade->baseUrl(), "https://" + stagingAddress + "/vb");
    EXPECT_EQ(facade->apiHost(), "staging");
    facade->setEnvironment(ApiEnvironment::dev);
    EXPECT_EQ(facade->fallbackIp(), stagingAddress);
    facade->setEnvironment(ApiEnvironment::beta);
    EXPECT_NE(facade->fallbackIp(), stagingAddress);
    EXPECT_EQ(facade->username(), "");
}

TEST(Facade, SettingsReachABackendOnlyWhenOneIsMade) {
    const auto facade = makeFacade();
    const auto first = facade->api();
    const auto uuid = Platform::Uuid::random();
    facade->setConsumerKey("key2");
    facade->setConsumerSecret("secret2");
    facade->setPartnersId(6);
    facade->setUid(uuid);
    facade->setKeychainTokenSerivce("service2");
    facade->setApiUrl(ApiUrl{"live2", "beta2", "dev2", "staging2"});
    facade->setEnvironment(ApiEnvironment::beta);
    facade->setUseFallbackIp(true);
    EXPECT_EQ(facade->apiHost(), "beta");
    const auto& old = dynamic_cast<const ApiVersion1&>(*first);
    EXPECT_EQ(old.consumerKey(), "key");
    EXPECT_EQ(old.keychainTokenService(), "service");

    facade->setVersion(ApiVersion::v1);
    EXPECT_NE(facade->api(), first);
    const auto& rebuilt = dynamic_cast<const ApiVersion1&>(*facade->api());
    EXPECT_EQ(rebuilt.consumerKey(), "key2");
    EXPECT_EQ(rebuilt.consumerSecret(), "secret2");
    EXPECT_EQ(rebuilt.partnersId(), 6);
    EXPECT_EQ(rebuilt.uuid(), uuid);
    EXPECT_EQ(rebuilt.keychainTokenService(), "service2");
    EXPECT_EQ(rebuilt.environment(), ApiEnvironment::beta);
    EXPECT_EQ(rebuilt.apiHost(), "beta2");
    EXPECT_TRUE(rebuilt.useFallbackIp());
    EXPECT_FALSE(rebuilt.oauthToken());
}

TEST(Facade, TheVersion2BackendStartsLiveAndInheritsTheFallbackMode) {
    const auto facade = makeFacade();
    facade->setEnvironment(ApiEnvironment::dev);
    facade->setUseFallbackIp(true);
    facade->setVersion(ApiVersion::v2);
    ASSERT_NE(dynamic_cast<const ApiVersion2*>(facade->api().get()), nullptr);
    EXPECT_EQ(facade->api()->environment(), ApiEnvironment::live);
    EXPECT_EQ(facade->environment(), ApiEnvironment::dev);
    EXPECT_TRUE(facade->useFallbackIp());
    EXPECT_EQ(makeFacade(ApiVersion::v2)->username(), "");
}

using CatalogueQueries = Testing::BackendFixture;

TEST_F(CatalogueQueries, TurnProfilesIntoFilterIds) {
    const auto facade = makeFacade();
    facade->setApi(backend);
    using enum ServerProfile;
    facade->getCountries(general, 1.5, 2.5, {});
    facade->getCountries(downloading, std::nullopt, std::nullopt, {});
    facade->getCountries(streaming, std::nullopt, std::nullopt, {});
    facade->getServers("DE", 1.5, 2.5, {});
    facade->getCandidateServers(std::nullopt, general, std::nullopt, {});
    facade->getCandidateServers("DE", general, 77, {});
    facade->getCandidateServers(std::nullopt, downloading, std::nullopt, {});
    facade->getCandidateServers(std::nullopt, streaming, 77, {});
    facade->getCandidateServers("DE", streaming, std::nullopt, {});
    facade->getDefaultFavorites({});
    facade->getServer(42, {});
    facade->getAuthToken({});
    facade->setFilters(FilterIds{11, 12, 13, 14, 15, 16, 17, 18, 19});
    facade->getDefaultFavorites({});
    std::vector<std::string> asked;
    for (const auto& request : session->requests) {
        asked.push_back(askedBy(*request));
    }
    EXPECT_THAT(asked, ElementsAre("servers?filter=2&filter_user_latitude=1.5&filter_user_longitude=2.5&",
                                   "servers?filter=5&", "servers?filter=7&",
                                   "servers?filter=4&filter_country=DE&filter_protocol=ipsec&filter_user_latitude=1.5&"
                                   "filter_user_longitude=2.5&",
                                   "servers?filter=1&filter_protocol=ipsec&",
                                   "servers?filter=3&filter_content_id=77&filter_country=DE&filter_protocol=ipsec&",
                                   "servers?filter=6&filter_protocol=ipsec&", "servers?filter=8&filter_protocol=ipsec&",
                                   "servers?filter=8&filter_country=DE&filter_protocol=ipsec&", "servers?filter=9&",
                                   "servers/42?", "users/me/authtoken?", "servers?filter=19&"));
}

}  // namespace
}  // namespace Tarnwick_API
