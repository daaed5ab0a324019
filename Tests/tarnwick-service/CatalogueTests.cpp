#include "Model/Catalogue.hpp"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace TarnwickService {
namespace {

TEST(PlacesTest, DistancesFollowTheGreatCircle) {
    struct Row {
        Coordinates from;
        Coordinates to;
        double kilometres = 0;
    };
    const Row rows[] = {{{52.5, 13.4}, {52.5, 13.4}, 0},
                        {{0, 0}, {0, 1}, 111.195},
                        {{90, 0}, {-90, 77}, 20015.114},
                        {{0, 179.5}, {0, -179.5}, 111.195},
                        {{60, 0}, {60, 180}, 6671.705}};
    for (const Row& row : rows) {
        EXPECT_NEAR(distanceInKilometres(row.from, row.to), row.kilometres, 0.001);
        EXPECT_NEAR(distanceInKilometres(row.to, row.from), row.kilometres, 0.001);
    }
}

TEST(PlacesTest, ReadsRowsOfTheZoneTable) {
    const Place newYork = parsePlace("US\t+404251-0740023\tAmerica/New_York\tEastern (most areas)");
    EXPECT_EQ(newYork.countryCode, "US");
    EXPECT_EQ(newYork.city, "New York");
    EXPECT_NEAR(newYork.coordinates.latitude, 40.7142, 0.0001);
    EXPECT_NEAR(newYork.coordinates.longitude, -74.0064, 0.0001);
    const Place auckland = parsePlace("NZ,AQ\t-3652+17446\tPacific/Auckland");
    EXPECT_EQ(auckland.countryCode, "NZ");
    EXPECT_NEAR(auckland.coordinates.latitude, -36.8667, 0.0001);
    EXPECT_NEAR(auckland.coordinates.longitude, 174.7667, 0.0001);
    for (const char* row :
         {"", "US", "US\t+4042\tAmerica/New_York", "US\t+40x2-07400\tAmerica/New_York", "US\t\tA/B"}) {
        EXPECT_THROW(static_cast<void>(parsePlace(row)), std::invalid_argument) << row;
    }
}

class CatalogueTest : public testing::Test {
protected:
    static constexpr std::size_t size = 1000;
    const Catalogue catalogue{readPlaces("/usr/share/zoneinfo"), size};
};

TEST_F(CatalogueTest, IsTheSameEveryTime) {
    const Catalogue again(readPlaces("/usr/share/zoneinfo"), size);
    std::set<std::string> addresses;
    ASSERT_EQ(catalogue.servers().size(), size);
    for (std::size_t i = 0; i < size; ++i) {
        const Server& server = catalogue.servers()[i];
        EXPECT_EQ(catalogue.find(server.id), &server);
        EXPECT_EQ(again.servers()[i].currentUsers, server.currentUsers);
        EXPECT_EQ(again.nameOf(again.servers()[i]), catalogue.nameOf(server));
        addresses.insert(catalogue.address6Of(server));
    }
    EXPECT_EQ(addresses.size(), size);
    EXPECT_EQ(catalogue.find(Catalogue::firstServerId - 1), nullptr);
    EXPECT_EQ(catalogue.find(Catalogue::firstServerId + static_cast<std::int64_t>(size)), nullptr);
}

TEST_F(CatalogueTest, ListsTheNearestFirst) {
    constexpr Coordinates sydney{-33.87, 151.21};
    const std::vector<ListedServer> all = catalogue.list({.origin = sydney});
    ASSERT_EQ(all.size(), size);
    EXPECT_EQ(catalogue.placeOf(*all.front().server).city, "Sydney");
    EXPECT_TRUE(std::ranges::is_sorted(all, {}, &ListedServer::distance));
    for (const auto& [server, distance] : all) {
        EXPECT_DOUBLE_EQ(distance, distanceInKilometres(sydney, catalogue.placeOf(*server).coordinates));
    }
    const std::vector<ListedCountry> countries = catalogue.listCountries(Usage::general, sydney);
    EXPECT_EQ(countries.front().code, "AU");
    EXPECT_EQ(countries.front().distance, all.front().distance);
}

TEST_F(CatalogueTest, FiltersDecideWhichServersAreListed) {
    const auto codes = [&](const ServerQuery& query) {
        std::set<std::string> result;
        for (const ListedServer& listed : catalogue.list(query)) {
            result.insert(catalogue.placeOf(*listed.server).countryCode);
        }
        return result;
    };
    EXPECT_EQ(codes({.countryCode = "DE"}), std::set<std::string>{"DE"});
    EXPECT_TRUE(codes({.countryCode = "XX"}).empty());
    EXPECT_FALSE(codes({.downloadingOnly = true}).contains("US"));
    EXPECT_EQ(codes({.contentId = 102}), (std::set<std::string>{"CA", "US"}));
    EXPECT_TRUE(codes({.contentId = 1}).empty());
    EXPECT_TRUE(codes({.countryCode = "DE", .contentId = 103}).empty());
    const auto candidates = catalogue.list({.candidatesOnly = true, .limit = 20});
    EXPECT_EQ(candidates.size(), 20U);
    EXPECT_TRUE(std::ranges::none_of(catalogue.list({.candidatesOnly = true}),
                                     [](const ListedServer& listed) { return listed.server->full(); }));
    EXPECT_LT(catalogue.list({.candidatesOnly = true}).size(), size);
}

}  // namespace
}  // namespace TarnwickService
