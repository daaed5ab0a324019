#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/FavoriteCountry.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/FavoriteItem.hpp>

#include "JsonSupport.hpp"

#include <limits>
#include <string>
#include <variant>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

TEST(LocationType, KnowsFourNumbers) {
    EXPECT_EQ(fromRawValue<LocationType>(0), LocationType::general);
    EXPECT_EQ(fromRawValue<LocationType>(1), LocationType::downloading);
    EXPECT_EQ(fromRawValue<LocationType>(2), LocationType::streaming);
    EXPECT_EQ(fromRawValue<LocationType>(3), LocationType::privateIp);
    for (const std::int64_t number :
         {std::int64_t{-1}, std::int64_t{4}, std::int64_t{1} << 32, std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_FALSE(fromRawValue<LocationType>(number)) << number;
    }
}

TEST(Country, ReadsAllButItsCodeLeniently) {
    const std::string json = R"({"countrycode":"NO","full":"1","max_users":"250","total_users":17,"distance":"12.5",
        "name":"Films","content_id":"9","type":"2"})";
    const auto country = decoded<Country>(json);
    EXPECT_EQ(country.id, 0);
    EXPECT_EQ(country.countryCode, "NO");
    EXPECT_TRUE(country.full);
    EXPECT_EQ(country.maxUsers, 250);
    EXPECT_EQ(country.currentUsers, 17);
    EXPECT_EQ(country.distance, 12.5);
    EXPECT_EQ(country.serviceName, "Films");
    EXPECT_EQ(country.serviceId, 9);
    EXPECT_EQ(country.type, LocationType::streaming);
    const auto bare = decoded<Country>(R"({"countrycode":"NO","full":null,"max_users":[],"name":1,"type":4,"id":5})");
    EXPECT_FALSE(bare.full || bare.maxUsers || bare.currentUsers || bare.distance || bare.serviceName ||
                 bare.serviceId || bare.type || bare.id != 0);
    EXPECT_FALSE(decoded<Country>(with(json, "\"2\"", "\"x\"")).type);
    EXPECT_FALSE(decoded<Country>(with(json, "\"1\"", "0")).full);
    EXPECT_EQ(outcomeOf<Country>(with(json, "countrycode", "countryCode")), "no key");
    EXPECT_EQ(outcomeOf<Country>(with(json, "\"NO\"", "47")), "mismatch countrycode");
}

TEST(Country, HasANameForTheUser) {
    Platform::Locale::setIdentifierLookup([] { return "de_DE"; });
    Country country;
    for (const auto& [code, name] : {std::pair{"NO", "Norwegen"}, {"AB", "Private IP"}, {"XX", ""}, {"", ""}}) {
        country.countryCode = code;
        EXPECT_EQ(country.localizedCountryName(), name);
    }
    Platform::Bundle::setMain(Platform::Bundle{{}, {{"CountryNameReturn", "Eigene Adresse"}}});
    country.countryCode = "AB";
    EXPECT_EQ(country.localizedCountryName(), "Eigene Adresse");
    Server server;
    server.location.countrycode = "NO";
    EXPECT_EQ(server.localizedCountryName(), "Norwegen");
    server.location.countrycode = "AB";
    EXPECT_EQ(server.localizedCountryName(), "");
    server.location.countrycode = "DE";
    for (const auto& [locale, name] :
         {std::pair{"ja_JP.UTF-8", "\xE3\x83\x89\xE3\x82\xA4\xE3\x83\x84"}, {"C", "Germany"}}) {
        Platform::Locale::setIdentifierLookup([locale = std::string{locale}] { return locale; });
        EXPECT_EQ(server.localizedCountryName(), name);
    }
    Platform::Bundle::setMain({});
    Platform::Locale::setIdentifierLookup(nullptr);
}

TEST(FavoriteCountry, NeedsItsCode) {
    const auto country = decoded<FavoriteCountry>(R"({"countryCode":"NO","name":"Films","content_id":9,"type":1})");
    EXPECT_EQ(country.countryCode, "NO");
    EXPECT_EQ(country.serviceName, "Films");
    EXPECT_EQ(country.serviceId, 9);
    EXPECT_EQ(country.type, LocationType::downloading);
    EXPECT_EQ(outcomeOf<FavoriteCountry>(R"({"countrycode":"NO"})"), "no key");
}

TEST(FavoriteItem, NeverFailsAndBecomesAServerOrACountry) {
    const auto entries = decodeFavoriteEntries(R"([
        {"server_id":"12","ip":"203.0.113.1","countryCode":"NO","name":"Oslo","content_id":"9","type":3},
        {"server_id":13,"ip":"","countryCode":1},
        {"server_id":14,"ip":null,"countryCode":"SE","name":"Films","content_id":"9","type":"2"},
        {}])");
    ASSERT_EQ(entries.size(), 4U);
    const auto& oslo = std::get<Server>(entries[0]);
    EXPECT_EQ(oslo.id, 12);
    EXPECT_EQ(oslo.name, "Oslo");
    EXPECT_EQ(oslo.ip, "203.0.113.1");
    EXPECT_EQ(oslo.hostname, "");
    EXPECT_EQ(oslo.location.countrycode, "NO");
    EXPECT_EQ(oslo.location.language, "");
    EXPECT_FALSE(oslo.location.city || oslo.location.distance || oslo.location.latitude || oslo.location.longitude);
    EXPECT_EQ(oslo.statistics.currentUsers, 0);
    EXPECT_EQ(oslo.statistics.maxUsers, 0);
    EXPECT_TRUE(oslo.configurations.empty());
    EXPECT_EQ(oslo.type, LocationType::privateIp);
    const auto& nameless = std::get<Server>(entries[1]);
    EXPECT_EQ(nameless.name + nameless.ip + nameless.location.countrycode, "");
    const auto& sweden = std::get<Country>(entries[2]);
    EXPECT_EQ(sweden.id, 0);
    EXPECT_EQ(sweden.countryCode, "SE");
    EXPECT_FALSE(sweden.cached || sweden.full || sweden.maxUsers || sweden.currentUsers || sweden.distance);
    EXPECT_EQ(sweden.serviceName, "Films");
    EXPECT_EQ(sweden.serviceId, 9);
    EXPECT_EQ(sweden.type, LocationType::streaming);
    EXPECT_EQ(std::get<Country>(entries[3]).countryCode, "");
    EXPECT_TRUE(decodeFavoriteEntries("[]").empty());
    EXPECT_THROW((void)decodeFavoriteEntries("[1]"), Platform::DecodingError);
    EXPECT_EQ(decoded<FavoriteItem>("{}").id, 0);
    EXPECT_FALSE(decoded<FavoriteItem>("{}").isServer());
}

}  // namespace
}  // namespace Tarnwick_API
