#pragma once

#include "Model/Places.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TarnwickService {

struct Server {
    std::int64_t id = 0;
    std::size_t place = 0;
    /// Counts the servers of one place, from 1.
    std::size_t number = 0;
    unsigned maxUsers = 0;
    unsigned currentUsers = 0;

    bool full() const { return currentUsers >= maxUsers; }
};

/// A content service that can be watched in some countries.
struct ContentService {
    std::int64_t id = 0;
    std::string name;
    std::vector<std::string> countryCodes;
};

/// What a server list is to hold.
struct ServerQuery {
    /// Empty: all countries.
    std::string countryCode{};
    bool downloadingOnly = false;
    bool streamingOnly = false;
    std::optional<std::int64_t> contentId{};
    /// Leaves out full servers.
    bool candidatesOnly = false;
    std::optional<std::size_t> limit{};
    Coordinates origin{};
};

struct ListedServer {
    const Server* server = nullptr;
    double distance = 0;
};

/// One country, or one content service in a country.
struct ListedCountry {
    std::string code;
    unsigned maxUsers = 0;
    unsigned currentUsers = 0;
    /// To the nearest server.
    double distance = 0;
    const ContentService* content = nullptr;
};

enum class Usage { general, downloading, streaming };

/// The servers, spread over real places: the same ones for the same number, however often it is made. Immutable.
class Catalogue {
public:
    static constexpr std::int64_t firstServerId = 1000;
    static constexpr std::size_t mostServers = 100'000;

    /// Throws std::invalid_argument for a number outside 1 to `mostServers`.
    Catalogue(std::vector<Place> places, std::size_t serverCount);

    const std::vector<Server>& servers() const { return servers_; }
    const std::vector<Place>& places() const { return places_; }
    const std::vector<ContentService>& contentServices() const { return contentServices_; }
    const Place& placeOf(const Server& server) const { return places_[server.place]; }
    const Server* find(std::int64_t id) const;
    const Server* firstIn(std::string_view countryCode) const;

    std::string nameOf(const Server& server) const;
    std::string displayNameOf(const Server& server) const;
    /// From the ranges set aside for documentation; they are few, so servers that are far apart share them.
    std::string addressOf(const Server& server) const;
    std::string address6Of(const Server& server) const;

    /// Nearest first; equally near ones by id.
    std::vector<ListedServer> list(const ServerQuery& query) const;
    /// Nearest first.
    std::vector<ListedCountry> listCountries(Usage usage, Coordinates origin) const;

    static bool allowsDownloading(std::string_view countryCode);

private:
    bool offers(const Place& place, const ServerQuery& query) const;
    std::size_t indexOf(const Server& server) const { return static_cast<std::size_t>(server.id - firstServerId); }

    std::vector<Place> places_;
    std::vector<Server> servers_;
    std::vector<ContentService> contentServices_;
};

}  // namespace TarnwickService
