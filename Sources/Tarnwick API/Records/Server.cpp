#include <Tarnwick_API/Records/Server.hpp>

#include <Platform/Json/JsonArrayPieces.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace Tarnwick_API {

using Platform::JsonDecoder;
using Platform::JsonObject;
using Platform::JsonValue;

// A list of servers grows by moving them.
static_assert(std::is_nothrow_move_constructible_v<Server>);

namespace {

/// Takes over the texts of a record that owns them, and copies what is kept of a borrowed one's.
template <typename Text>
Server serverFrom(BasicServerShort<Text>&& source) {
    Server server;
    server.id = source.id;
    server.name = source.displayName ? std::move(*source.displayName) : std::move(source.apiName);
    server.ip = std::move(source.ip);
    server.location.countrycode = std::move(source.countryCode);
    if (source.city) {
        server.location.city.emplace(std::move(*source.city));
    }
    server.location.distance = source.distance;
    server.location.latitude = source.latitude;
    server.location.longitude = source.longitude;
    server.statistics = {.currentUsers = source.currentUsers, .maxUsers = source.maxUsers};
    return server;
}

}  // namespace

Server::Server(ServerShort&& server) noexcept : Server{serverFrom(std::move(server))} {
}

Server::Server(ServerLong&& server) noexcept
    : ApiItem{.id = server.id},
      name{server.displayName ? *std::move(server.displayName) : std::move(server.apiName)},
      ip{std::move(server.ip)},
      hostname{std::move(server.hostname)},
      location{.countrycode = std::move(server.location.countrycode),
               .language = std::move(server.location.language),
               .city = std::move(server.location.city),
               .distance = {},
               .latitude = {},
               .longitude = {}},
      statistics{server.statistics},
      configurations{std::move(server.configurations)} {
}

Server::Server(FavoriteItem item) noexcept
    : ApiItem{.id = item.id},
      name{std::move(item.name).value_or("")},
      ip{std::move(item.ip).value_or("")},
      type{item.type} {
    location.countrycode = std::move(item.countryCode);
}

std::string Server::localizedCountryName() const {
    return countryName(location.countrycode);
}

std::string Server::description() const {
    return "Name: " + name + ", IP: " + ip + ", Host: " + hostname + ", Location: " + location.countrycode;
}

Server decodeServer(const Platform::Bytes& bytes, ServerJsonKind kind) {
    const JsonDecoder decoder;
    return kind == ServerJsonKind::long_ ? Server{decoder.decode<ServerLong>(bytes)}
                                         : Server{decoder.decode<ServerShort>(bytes)};
}

std::vector<Server> decodeServers(const Platform::Bytes& bytes, ServerJsonKind kind) {
    if (kind == ServerJsonKind::long_) {
        return Platform::mapArrayText(bytes, [decoder = JsonDecoder{}](const JsonValue& element) {
            return Server{ServerLong::decode(element.require<JsonObject>(), decoder)};
        });
    }
    // Most of a long list's servers keep only a part of their texts.
    return Platform::mapArrayText(bytes, [decoder = JsonDecoder{}](const JsonValue& element) {
        return serverFrom(BasicServerShort<std::string_view>::decode(element.require<JsonObject>(), decoder));
    });
}

}  // namespace Tarnwick_API
