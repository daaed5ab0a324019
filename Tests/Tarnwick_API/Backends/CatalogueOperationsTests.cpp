#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include "BackendFixture.hpp"

#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Testing::Received;
using Testing::ScriptedHttpSession;

constexpr const char* shortServer =
    R"({"id":"7","name":"fra-7","ip":"192.0.2.7","Max_Users":"10","totalusers":"4","countrycode":"DE",)"
    R"("distance":"1.5","latitude":"x","longitude":"8.6"})";

class CatalogueOperations : public Testing::BackendFixture {
protected:
    void answer(std::string body) { session->script({ScriptedHttpSession::answer(200, std::move(body))}); }

    [[nodiscard]] std::string asked() const { return askedBy(*session->requests.back()); }

    template <typename T>
    void expectNeitherResultNorError(const Received<T>& received) {
        EXPECT_TRUE(received.times == 1 && !received.result && !received.error);
    }
};

TEST_F(CatalogueOperations, AskForWhatTheCallerNamed) {
    answer("[]");
    backend->getCountries(12, 52.52, 13.405, {});
    EXPECT_EQ(asked(), "servers?filter=12&filter_user_latitude=52.52&filter_user_longitude=13.405&");
    backend->getCountries(12, 52.52, std::nullopt, {});
    EXPECT_EQ(asked(), "servers?filter=12&");
    backend->getServers(14, "DE", -33.8688, 98.4, {});
    EXPECT_EQ(asked(),
              "servers?filter=14&filter_country=DE&filter_protocol=ipsec&filter_user_latitude=-33.8688&"
              "filter_user_longitude=98.40000000000001&");
    backend->getCandidateServers(13, "DE", 5, {});
    EXPECT_EQ(asked(), "servers?filter=13&filter_content_id=5&filter_country=DE&filter_protocol=ipsec&");
    backend->getCandidateServers(13, std::nullopt, 5, {});
    EXPECT_EQ(asked(), "servers?filter=13&filter_protocol=ipsec&");
    backend->getCandidateServers(13, "DE", std::nullopt, {});
    EXPECT_EQ(asked(), "servers?filter=13&filter_country=DE&filter_protocol=ipsec&");
    backend->getServer(42, {});
    EXPECT_EQ(asked(), "servers/42?");
    backend->getDefaultFavorites(41, {});
    EXPECT_EQ(asked(), "servers?filter=41&");
    queue->runAll();
}

TEST_F(CatalogueOperations, DecodeByTheCallsClass) {
    answer(R"([{"countrycode":"DE","max_users":"9"},{"countrycode":"AB"}])");
    Received<std::vector<Country>> countries;
    backend->getCountries(12, {}, {}, countries.completion());
    queue->runAll();
    ASSERT_TRUE(countries.result);
    EXPECT_EQ(countries.result->at(0).maxUsers, 9);
    EXPECT_EQ(countries.result->at(1).countryCode, "AB");

    answer("[" + std::string{shortServer} + "]");
    for (const bool candidates : {false, true}) {
        Received<std::vector<Server>> servers;
        if (candidates) {
            backend->getCandidateServers(13, "DE", 5, servers.completion());
        } else {
            backend->getServers(14, "DE", {}, {}, servers.completion());
        }
        queue->runAll();
        ASSERT_TRUE(servers.result && servers.result->size() == 1);
        EXPECT_EQ(servers.result->at(0).name, "fra-7");
        EXPECT_EQ(servers.result->at(0).location.latitude, std::nullopt);
    }

    answer(R"({"id":42,"name":"ber-42","dnsname":"ber-42.example","ip":"192.0.2.42","location":{"countrycode":"DE",)"
           R"("language":"de"},"statistics":{"totalusers":1,"maxusers":2},"configurations":[{"id":1,"name":"c",)"
           R"("type":"IPSEC","dns1":"a","dns2":"b","dns3":"c","preshared_secret":"never"}]})");
    Received<Server> server;
    backend->getServer(42, server.completion());
    queue->runAll();
    ASSERT_TRUE(server.result);
    EXPECT_EQ(server.result->hostname, "ber-42.example");
    EXPECT_EQ(server.result->configurations.at(0).presharedSecret, std::nullopt);

    answer(
        R"([{"server_id":"12","ip":"192.0.2.12","countryCode":"FR","content_id":3},{"server_id":13,"countryCode":"DE",)"
        R"("name":"Films","content_id":"3","type":2}])");
    Received<std::vector<FavoriteEntry>> favorites;
    backend->getDefaultFavorites(41, favorites.completion());
    queue->runAll();
    ASSERT_TRUE(favorites.result && favorites.result->size() == 2);
    const auto& favoriteServer = std::get<Server>(favorites.result->at(0));
    EXPECT_TRUE(favoriteServer.id == 12 && favoriteServer.name.empty());
    const auto& favoriteCountry = std::get<Country>(favorites.result->at(1));
    EXPECT_TRUE(favoriteCountry.id == 0 && favoriteCountry.serviceId == 3 &&
                favoriteCountry.type == LocationType::streaming);
}

TEST_F(CatalogueOperations, TellEmptyListsFromUnreadableOnes) {
    Received<std::vector<Country>> countries;
    Received<std::vector<Server>> servers;
    Received<std::vector<Device>> devices;
    Received<std::vector<FavoriteEntry>> favorites;
    answer("[]");
    backend->getCountries(12, {}, {}, countries.completion());
    backend->getServers(14, "DE", {}, {}, servers.completion());
    backend->getDevices(devices.completion());
    backend->getDefaultFavorites(41, favorites.completion());
    queue->runAll();
    EXPECT_TRUE(countries.result && countries.result->empty());
    EXPECT_TRUE(servers.result && servers.result->empty());
    EXPECT_TRUE(devices.result && devices.result->empty());
    expectNeitherResultNorError(favorites);

    answer("[" + std::string{shortServer} + R"(,{"id":7}])");
    Received<std::vector<Server>> oneBad;
    backend->getServers(14, "DE", {}, {}, oneBad.completion());
    queue->runAll();
    expectNeitherResultNorError(oneBad);

    answer("[");
    Received<std::vector<Device>> truncated;
    backend->getDevices(truncated.completion());
    queue->runAll();
    expectNeitherResultNorError(truncated);

    session->script({ScriptedHttpSession::answer(404, "[]")});
    Received<Server> missing;
    backend->getServer(1, missing.completion());
    queue->runAll();
    EXPECT_FALSE(missing.result);
    EXPECT_EQ(missing.error, ApiError{ResponseError::notFound()});
}

TEST_F(CatalogueOperations, DevicesAreAskedForWithAJsonBodyOnGet) {
    answer(R"([{"id":"17","token":"t","consumer":{"device_type":"win"},"created":"2019-03-01 09:15:00"}])");
    Received<std::vector<Device>> devices;
    backend->getDevices(devices.completion());
    const auto& request = *session->requests.back();
    EXPECT_EQ(request.method(), Platform::HttpMethod::get);
    EXPECT_EQ(request.url().absoluteString(), "https://live.example.test/vb/users/me/access_tokens");
    EXPECT_EQ(request.body(), R"({"language":"en","os":"mac","partnersId":"7","region":"GB","version":"7100"})");
    queue->runAll();
    ASSERT_TRUE(devices.result && devices.result->size() == 1);
    EXPECT_EQ(devices.result->at(0).type, DeviceType::windows);
}

}  // namespace
}  // namespace Tarnwick_API
