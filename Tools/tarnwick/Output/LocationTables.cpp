#include "Output/LocationTables.hpp"

#include "Output/NumberText.hpp"
#include "Output/RecordJson.hpp"
#include "Output/Table.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace TarnwickClient {

using Tarnwick_API::Country;
using Tarnwick_API::FavoriteEntry;
using Tarnwick_API::Server;

namespace {

std::string rounded(double value, const char* format) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

std::string distanceText(const std::optional<double>& distance) {
    return distance ? wholeNumberText(*distance) : "";
}

/// Between 0 and 1; none when there is no room for anyone, or nothing is known.
std::optional<double> load(std::optional<std::int64_t> users, std::optional<std::int64_t> maxUsers) {
    if (!users || !maxUsers || *maxUsers <= 0) {
        return std::nullopt;
    }
    return static_cast<double>(*users) / static_cast<double>(*maxUsers);
}

std::string loadText(const std::optional<double>& load) {
    return load ? rounded(*load * 100, "%.0f %%") : "";
}

std::string countText(const std::optional<std::int64_t>& count) {
    return count ? std::to_string(*count) : "";
}

bool isBefore(const std::string& left, const std::string& right) {
    return std::strcoll(left.c_str(), right.c_str()) < 0;
}

/// NaN has no place in an order, and counts as nothing known.
double orLast(const std::optional<double>& value) {
    return value && !std::isnan(*value) ? *value : std::numeric_limits<double>::infinity();
}

template <typename Record>
Json listJson(const std::vector<Record>& records) {
    Json json = Json::array();
    for (const auto& record : records) {
        json.push_back(toJson(record));
    }
    return json;
}

std::optional<double> loadOf(const Server& server) {
    return load(server.statistics.currentUsers, server.statistics.maxUsers);
}

Result listResult(Json json, const Table& table, const char* nothing) {
    return {std::move(json),
            [table, nothing](auto width) { return table.empty() ? std::string{nothing} : table.render(width); }};
}

void addConfigurations(Table& table, const Server& server) {
    for (const auto& configuration : server.configurations) {
        std::string dns;
        for (const auto* address : {&configuration.dns1, &configuration.dns2, &configuration.dns3}) {
            dns += address->empty() ? "" : (dns.empty() ? "" : " ") + *address;
        }
        const auto port = configuration.port ? configuration.port : configuration.portrange;
        table.addRow(
            {std::to_string(configuration.id), configuration.name, configuration.type, port.value_or(""), dns});
    }
}

}  // namespace

Result countriesResult(std::vector<Country> countries) {
    std::stable_sort(countries.begin(), countries.end(), [](const Country& left, const Country& right) {
        const auto leftDistance = orLast(left.distance);
        const auto rightDistance = orLast(right.distance);
        return leftDistance != rightDistance ? leftDistance < rightDistance
                                             : isBefore(left.localizedCountryName(), right.localizedCountryName());
    });
    using enum Table::Alignment;
    Table table{{{"CODE"},
                 {"COUNTRY"},
                 {"SERVICE ID", right},
                 {"SERVICE"},
                 {"DISTANCE", right},
                 {"USERS", right},
                 {"PLACES", right},
                 {"LOAD", right},
                 {""}}};
    for (const auto& country : countries) {
        table.addRow({country.countryCode, country.localizedCountryName(), countText(country.serviceId),
                      country.serviceName.value_or(""), distanceText(country.distance), countText(country.currentUsers),
                      countText(country.maxUsers), loadText(load(country.currentUsers, country.maxUsers)),
                      country.full ? "full" : ""});
    }
    return listResult(listJson(countries), table, "No countries.\n");
}

Result serversResult(std::vector<Server> servers) {
    std::stable_sort(servers.begin(), servers.end(), [](const Server& left, const Server& right) {
        const auto leftDistance = orLast(left.location.distance);
        const auto rightDistance = orLast(right.location.distance);
        return leftDistance != rightDistance ? leftDistance < rightDistance
                                             : orLast(loadOf(left)) < orLast(loadOf(right));
    });
    using enum Table::Alignment;
    Table table{{{"ID", right},
                 {"NAME"},
                 {"ADDRESS"},
                 {"CODE"},
                 {"CITY"},
                 {"DISTANCE", right},
                 {"USERS", right},
                 {"PLACES", right},
                 {"LOAD", right}}};
    for (const auto& server : servers) {
        table.addRow({std::to_string(server.id), server.name, server.ip, server.location.countrycode,
                      server.location.city.value_or(""), distanceText(server.location.distance),
                      std::to_string(server.statistics.currentUsers), std::to_string(server.statistics.maxUsers),
                      loadText(loadOf(server))});
    }
    return listResult(listJson(servers), table, "No servers.\n");
}

Result serverResult(const Server& server) {
    Table facts{{{""}, {""}}};
    facts.addRow({"Id", std::to_string(server.id)});
    facts.addRow({"Name", server.name});
    facts.addRow({"Address", server.ip});
    facts.addRow({"Host", server.hostname});
    const auto city = server.location.city ? *server.location.city + ", " : std::string{};
    facts.addRow({"Place", city + server.localizedCountryName() + " (" + server.location.countrycode + ")"});
    facts.addRow({"Load", std::to_string(server.statistics.currentUsers) + " of " +
                              std::to_string(server.statistics.maxUsers) + " places"});
    Table configurations{{{"CONFIGURATION", Table::Alignment::right}, {"NAME"}, {"TYPE"}, {"PORT"}, {"DNS"}}};
    addConfigurations(configurations, server);
    return {toJson(server), [facts, configurations](auto width) {
                auto text = facts.render(width);
                if (!configurations.empty()) {
                    text.append("\n").append(configurations.render(width));
                }
                return text;
            }};
}

Result favoritesResult(const std::vector<FavoriteEntry>& favorites) {
    Table table{{{"KIND"}, {"ID", Table::Alignment::right}, {"NAME"}, {"ADDRESS"}, {"CODE"}, {"COUNTRY"}, {"FOR"}}};
    Json json = Json::array();
    const auto typeText = [](const auto& entry) { return entry.type ? name(*entry.type) : ""; };
    for (const auto& favorite : favorites) {
        if (const auto* server = std::get_if<Server>(&favorite)) {
            json.push_back({{"server", toJson(*server)}});
            table.addRow({"server", std::to_string(server->id), server->name, server->ip, server->location.countrycode,
                          server->localizedCountryName(), typeText(*server)});
        } else {
            const auto& country = std::get<Country>(favorite);
            json.push_back({{"country", toJson(country)}});
            table.addRow({"country", "", country.serviceName.value_or(""), "", country.countryCode,
                          country.localizedCountryName(), typeText(country)});
        }
    }
    return listResult(std::move(json), table, "No favourites.\n");
}

}  // namespace TarnwickClient
