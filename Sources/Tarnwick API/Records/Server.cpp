#include <Tarnwick_API/Records/Server.hpp>

#include <type_traits>
#include <utility>

namespace Tarnwick_API {

using Platform::JsonArray;
using Platform::JsonDecoder;
using Platform::JsonDocument;
using Platform::JsonObject;
using Platform::JsonValue;

// A list of servers grows by moving them.
static_assert(std::is_nothrow_move_constructible_v<Server>);

Server::Server(ServerShort&& server) noexcept
    : ApiItem{.id = server.id},
      name{server.displayName ? *std::move(server.displayName) : std::move(server.apiName)},
      ip{std::move(server.ip)},
      location{.countrycode = std::move(server.countryCode),
               .language = {},
               .city = std::move(server.city),
               .distance = server.distance,
               .latitude = server.latitude,
               .longitude = server.longitude},
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

namespace {

template <typename Record>
std::vector<Server> decodeServersFrom(const Platform::Bytes& bytes) {
    const JsonDecoder decoder;
    const JsonDocument document{bytes};
    const auto elements = document.root().require<JsonArray>();
    std::vector<Server> servers;
    servers.reserve(elements.size());
    elements.forEach([&](const JsonValue& element) {
        servers.emplace_back(Record::decode(element.require<JsonObject>(), decoder));
    });
    return servers;
}

}  // namespace

Server decodeServer(const Platform::Bytes& bytes, ServerJsonKind kind) {
    const JsonDecoder decoder;
    return kind == ServerJsonKind::long_ ? Server{decoder.decode<ServerLong>(bytes)}
                                         : Server{decoder.decode<ServerShort>(bytes)};
}

std::vector<Server> decodeServers(const Platform::Bytes& bytes, ServerJsonKind kind) {
    return kind == ServerJsonKind::long_ ? decodeServersFrom<ServerLong>(bytes) : decodeServersFrom<ServerShort>(bytes);
}

}  // namespace Tarnwick_API
