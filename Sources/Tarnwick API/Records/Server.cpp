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

template <typename Text>
Server::Location locationFrom(BasicServerShort<Text>& server) {
    return {.countrycode = std::string{std::move(server.countryCode)},
            .language = {},
            .city = server.city ? std::optional<std::string>{std::move(*server.city)} : std::nullopt,
            .distance = server.distance,
            .latitude = server.latitude,
            .longitude = server.longitude};
}

}  // namespace

Server::Server(ServerShort&& server) noexcept
    : ApiItem{.id = server.id},
      name{server.displayName ? *std::move(server.displayName) : std::move(server.apiName)},
      ip{std::move(server.ip)},
      location{locationFrom(server)},
      statistics{.currentUsers = server.currentUsers, .maxUsers = server.maxUsers} {
}

Server::Server(BasicServerShort<std::string_view>&& server)
    : ApiItem{.id = server.id},
      name{server.displayName.value_or(server.apiName)},
      ip{server.ip},
      location{locationFrom(server)},
      statistics{.currentUsers = server.currentUsers, .maxUsers = server.maxUsers} {
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

Server::Server(BasicServerLong<std::string_view>&& server)
    : ApiItem{.id = server.id},
      name{server.displayName.value_or(server.apiName)},
      ip{server.ip},
      hostname{server.hostname},
      location{.countrycode = std::string{server.location.countrycode},
               .language = std::string{server.location.language},
               .city = server.location.city ? std::optional<std::string>{*server.location.city} : std::nullopt,
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
    // Most of a long list's servers keep only a part of their texts.
    if (kind == ServerJsonKind::long_) {
        return Platform::mapArrayText<Server>(bytes, [decoder = JsonDecoder{}](const JsonValue& element) {
            return BasicServerLong<std::string_view>::decode(element.require<JsonObject>(), decoder);
        });
    }
    return Platform::mapArrayText<Server>(bytes, [decoder = JsonDecoder{}](const JsonValue& element) {
        return BasicServerShort<std::string_view>::decode(element.require<JsonObject>(), decoder);
    });
}

}  // namespace Tarnwick_API
