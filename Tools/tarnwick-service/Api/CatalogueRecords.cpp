#include "Api/CatalogueRecords.hpp"

#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

namespace TarnwickService {
namespace {

using Json = nlohmann::ordered_json;

std::string decimal(double value, int digits) {
    std::array<char, 32> text{};
    return {text.data(),
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, digits).ptr};
}

constexpr int distanceDigits = 1;
constexpr int angleDigits = 4;

enum class LocationType { general = 0, downloading = 1, streaming = 2, privateAddress = 3 };

// Appended element by element: the tree of a large list would take many times the space of its text.
template <typename Element, typename ToJson>
std::string listOf(const std::vector<Element>& elements, ToJson toJson) {
    std::string text = "[";
    for (const Element& element : elements) {
        if (text.size() > 1) {
            text += ',';
        }
        text += toJson(element).dump();
    }
    text += ']';
    return text;
}

Json shortServer(const Catalogue& catalogue, const ListedServer& listed) {
    const Server& server = *listed.server;
    const Place& place = catalogue.placeOf(server);
    return {{"id", std::to_string(server.id)},
            {"name", catalogue.nameOf(server)},
            {"displayName", catalogue.displayNameOf(server)},
            {"ip", catalogue.addressOf(server)},
            {"ipv6", catalogue.address6Of(server)},
            {"Max_Users", std::to_string(server.maxUsers)},
            {"totalusers", std::to_string(server.currentUsers)},
            {"countrycode", place.countryCode},
            {"distance", decimal(listed.distance, distanceDigits)},
            {"latitude", decimal(place.coordinates.latitude, angleDigits)},
            {"longitude", decimal(place.coordinates.longitude, angleDigits)},
            {"city", place.city},
            {"scheduled_maintenance", nullptr},
            {"tags", Json::array()}};
}

Json configuration(std::int64_t id, const char* name, const char* type, const char* port, const char* portRange) {
    return {{"id", id},
            {"name", name},
            {"type", type},
            {"dns1", "192.0.2.53"},
            {"dns2", "198.51.100.53"},
            {"dns3", "203.0.113.53"},
            {"clientdata", nullptr},
            {"preshared_secret", "tarnwick-demonstration"},
            {"port", port},
            {"portrange", portRange},
            {"weight", 1.5}};
}

}  // namespace

std::string shortServerList(const Catalogue& catalogue, const std::vector<ListedServer>& servers) {
    return listOf(servers, [&](const ListedServer& listed) { return shortServer(catalogue, listed); });
}

std::string longServer(const Catalogue& catalogue, const Server& server) {
    const Place& place = catalogue.placeOf(server);
    constexpr std::int64_t configurationsPerServer = 2;
    const std::int64_t firstConfiguration = server.id * configurationsPerServer;
    const Json configurations = Json::array({configuration(firstConfiguration, "IKEv2", "IPSEC", "500", "500-4500"),
                                             configuration(firstConfiguration + 1, "L2TP", "L2TP", "1701", "1701")});
    const Json record = {{"id", server.id},
                         {"name", catalogue.nameOf(server)},
                         {"displayName", catalogue.displayNameOf(server)},
                         {"dnsname", catalogue.nameOf(server) + ".servers.tarnwick.example"},
                         {"ip", catalogue.addressOf(server)},
                         {"ipv6", catalogue.address6Of(server)},
                         {"location",
                          {{"countrycode", place.countryCode},
                           {"countryname", place.countryName},
                           {"language", "en"},
                           {"city", place.city},
                           {"timezone", place.zone}}},
                         {"statistics",
                          {{"totalusers", server.currentUsers},
                           {"maxusers", server.maxUsers},
                           {"load", static_cast<double>(server.currentUsers) / server.maxUsers}}},
                         {"configurations", configurations},
                         {"online", true}};
    return record.dump();
}

std::string countryList(Usage usage, const std::vector<ListedCountry>& countries) {
    return listOf(countries, [&](const ListedCountry& country) {
        Json record = {{"countrycode", country.code},
                       {"full", country.currentUsers >= country.maxUsers ? "1" : "0"},
                       {"max_users", std::to_string(country.maxUsers)},
                       {"total_users", country.currentUsers},
                       {"distance", decimal(country.distance, distanceDigits)}};
        if (country.content != nullptr) {
            record["name"] = country.content->name;
            record["content_id"] = std::to_string(country.content->id);
        }
        record["type"] = static_cast<int>(usage);
        record["popularity"] = nullptr;
        return record;
    });
}

std::string defaultFavorites(const Catalogue& catalogue) {
    Json list = Json::array();
    const auto addServer = [&](const char* countryCode) {
        if (const Server* server = catalogue.firstIn(countryCode)) {
            list.push_back({{"server_id", std::to_string(server->id)},
                            {"ip", catalogue.addressOf(*server)},
                            {"countryCode", countryCode},
                            {"name", catalogue.displayNameOf(*server)},
                            {"type", static_cast<int>(LocationType::general)}});
        }
    };
    const auto addCountry = [&](const char* countryCode) {
        if (catalogue.firstIn(countryCode) != nullptr) {
            list.push_back({{"countryCode", countryCode},
                            {"name", nullptr},
                            {"type", std::to_string(static_cast<int>(LocationType::general))}});
        }
    };
    addServer("DE");
    addCountry("US");
    for (const ContentService& service : catalogue.contentServices()) {
        const std::string& countryCode = service.countryCodes.front();
        if (catalogue.firstIn(countryCode) != nullptr) {
            list.push_back({{"countryCode", countryCode},
                            {"name", service.name},
                            {"content_id", service.id},
                            {"type", static_cast<int>(LocationType::streaming)}});
        }
    }
    addCountry("GB");
    addServer("JP");
    list.push_back(
        {{"countryCode", "AB"}, {"name", "Private address"}, {"type", static_cast<int>(LocationType::privateAddress)}});
    return list.dump();
}

}  // namespace TarnwickService
