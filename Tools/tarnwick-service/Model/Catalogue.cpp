#include "Model/Catalogue.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <stdexcept>

namespace TarnwickService {
namespace {

// The places that get a server first, so that also a small catalogue covers the continents.
constexpr std::array<std::string_view, 24> preferredZones{
    "Europe/Berlin",    "America/New_York", "Europe/London",   "Europe/Paris",      "America/Los_Angeles",
    "Asia/Tokyo",       "Australia/Sydney", "America/Toronto", "Europe/Zurich",     "Europe/Brussels",
    "Asia/Singapore",   "Europe/Madrid",    "Europe/Rome",     "America/Sao_Paulo", "Africa/Johannesburg",
    "Asia/Hong_Kong",   "America/Chicago",  "Europe/Warsaw",   "Asia/Kolkata",      "America/Mexico_City",
    "Pacific/Auckland", "Europe/Vienna",    "Asia/Dubai",      "Africa/Nairobi"};

// Sebastiano Vigna's SplitMix64: an even spread from consecutive numbers, the same on every machine.
std::uint64_t mixed(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

void putPreferredFirst(std::vector<Place>& places) {
    auto next = places.begin();
    for (const std::string_view zone : preferredZones) {
        const auto found = std::find_if(next, places.end(), [&](const Place& place) { return place.zone == zone; });
        if (found != places.end()) {
            std::rotate(next, found, found + 1);
            ++next;
        }
    }
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::string hexadecimal(std::size_t number) {
    std::array<char, 16> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr};
}

}  // namespace

Catalogue::Catalogue(std::vector<Place> places, std::size_t serverCount)
    : places_(std::move(places)),
      contentServices_{{101, "Streamway", {"US", "GB", "DE"}},
                       {102, "Cinefold", {"US", "CA"}},
                       {103, "Telebay", {"GB"}},
                       {104, "Canal Nord", {"FR", "BE", "CH"}},
                       {105, "Kickoff TV", {"DE", "ES", "IT"}}} {
    if (serverCount < 1 || serverCount > mostServers) {
        throw std::invalid_argument("the catalogue holds 1 to " + std::to_string(mostServers) + " servers, not " +
                                    std::to_string(serverCount));
    }
    putPreferredFirst(places_);
    servers_.reserve(serverCount);
    for (std::size_t i = 0; i < serverCount; ++i) {
        Server server;
        server.id = firstServerId + static_cast<std::int64_t>(i);
        server.place = i % places_.size();
        server.number = i / places_.size() + 1;
        const std::uint64_t chance = mixed(i);
        constexpr unsigned sizeStep = 50;
        server.maxUsers = sizeStep * (2 + static_cast<unsigned>(chance % 9));
        // Goes a little past the maximum, so that about one server in fifty is full.
        server.currentUsers =
            std::min(server.maxUsers, static_cast<unsigned>((chance >> 8U) % (server.maxUsers + server.maxUsers / 50)));
        servers_.push_back(server);
    }
}

const Server* Catalogue::find(std::int64_t id) const {
    const bool known = id >= firstServerId && id - firstServerId < static_cast<std::int64_t>(servers_.size());
    return known ? &servers_[static_cast<std::size_t>(id - firstServerId)] : nullptr;
}

const Server* Catalogue::firstIn(std::string_view countryCode) const {
    const auto found = std::ranges::find_if(
        servers_, [&](const Server& server) { return placeOf(server).countryCode == countryCode; });
    return found == servers_.end() ? nullptr : &*found;
}

std::string Catalogue::nameOf(const Server& server) const {
    const Place& place = placeOf(server);
    std::string name = lowerCase(place.countryCode) + '-' + lowerCase(place.city);
    std::erase_if(name, [](char c) { return c == ' '; });
    return name + "-v" + std::to_string(server.number);
}

std::string Catalogue::displayNameOf(const Server& server) const {
    return placeOf(server).city + ' ' + std::to_string(server.number);
}

std::string Catalogue::addressOf(const Server& server) const {
    constexpr std::array<std::string_view, 3> networks{"192.0.2.", "198.51.100.", "203.0.113."};
    constexpr std::size_t hostsPerNetwork = 254;
    const std::size_t index = indexOf(server) % (networks.size() * hostsPerNetwork);
    return std::string(networks[index / hostsPerNetwork]) + std::to_string(index % hostsPerNetwork + 1);
}

std::string Catalogue::address6Of(const Server& server) const {
    constexpr std::size_t groupSize = 0x10000;
    const std::size_t index = indexOf(server);
    return "2001:db8:" + hexadecimal(server.place + 1) + ':' + hexadecimal(index / groupSize + 1) +
           "::" + hexadecimal(index % groupSize + 1);
}

std::vector<ListedServer> Catalogue::list(const ServerQuery& query) const {
    struct Candidate {
        std::size_t place;
        double distance;
    };
    std::vector<Candidate> candidates;
    for (std::size_t place = 0; place < std::min(places_.size(), servers_.size()); ++place) {
        if (offers(places_[place], query)) {
            candidates.push_back({place, distanceInKilometres(query.origin, places_[place].coordinates)});
        }
    }
    std::ranges::stable_sort(candidates, {}, &Candidate::distance);
    std::vector<ListedServer> result;
    const std::size_t limit = query.limit.value_or(servers_.size());
    for (const auto& [place, distance] : candidates) {
        for (std::size_t i = place; i < servers_.size() && result.size() < limit; i += places_.size()) {
            if (!query.candidatesOnly || !servers_[i].full()) {
                result.push_back({&servers_[i], distance});
            }
        }
    }
    return result;
}

std::vector<ListedCountry> Catalogue::listCountries(Usage usage, Coordinates origin) const {
    std::map<std::string_view, ListedCountry> byCode;
    std::vector<double> distances;
    for (const Place& place : places_) {
        distances.push_back(distanceInKilometres(origin, place.coordinates));
    }
    for (const Server& server : servers_) {
        const Place& place = placeOf(server);
        const double distance = distances[server.place];
        const auto [entry, isNew] = byCode.try_emplace(place.countryCode);
        ListedCountry& country = entry->second;
        if (isNew) {
            country.code = place.countryCode;
        }
        country.distance = isNew ? distance : std::min(country.distance, distance);
        country.maxUsers += server.maxUsers;
        country.currentUsers += server.currentUsers;
    }
    std::vector<ListedCountry> result;
    for (const auto& [code, country] : byCode) {
        if (usage == Usage::general || (usage == Usage::downloading && allowsDownloading(code))) {
            result.push_back(country);
        }
    }
    if (usage == Usage::streaming) {
        for (const ContentService& service : contentServices_) {
            for (const std::string& code : service.countryCodes) {
                if (const auto entry = byCode.find(code); entry != byCode.end()) {
                    result.push_back(entry->second);
                    result.back().content = &service;
                }
            }
        }
    }
    std::ranges::stable_sort(result, {}, &ListedCountry::distance);
    return result;
}

bool Catalogue::allowsDownloading(std::string_view countryCode) {
    constexpr std::array<std::string_view, 6> forbidding{"AU", "FR", "GB", "IN", "JP", "US"};
    return std::ranges::find(forbidding, countryCode) == forbidding.end();
}

bool Catalogue::offers(const Place& place, const ServerQuery& query) const {
    if (!query.countryCode.empty() && place.countryCode != query.countryCode) {
        return false;
    }
    if (query.downloadingOnly && !allowsDownloading(place.countryCode)) {
        return false;
    }
    if (!query.streamingOnly && !query.contentId) {
        return true;
    }
    return std::ranges::any_of(contentServices_, [&](const ContentService& service) {
        return (!query.contentId || service.id == *query.contentId) &&
               std::ranges::find(service.countryCodes, place.countryCode) != service.countryCodes.end();
    });
}

}  // namespace TarnwickService
