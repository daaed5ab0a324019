#include <Tarnwick_API/Records/ServerShort.hpp>

#include <Records/NumberText.hpp>
#include <Records/ServerShortFields.hpp>

namespace Tarnwick_API {

std::string ServerShort::description() const {
    return "Name: " + displayName.value_or(apiName) + ", IP: " + ip + ", Location: " + countryCode;
}

ServerShortFields readServerShort(const Platform::JsonObject& object) {
    return {.id = requireIntText(object, "id"),
            .apiName = object.require<std::string_view>("name"),
            .displayName = object.ifPresent<std::string_view>("displayName"),
            .ip = object.require<std::string_view>("ip"),
            .ipv6 = object.ifPresent<std::string_view>("ipv6"),
            .maxUsers = requireIntText(object, "Max_Users"),
            .currentUsers = requireIntText(object, "totalusers"),
            .countryCode = object.require<std::string_view>("countrycode"),
            .distance = requireDoubleText(object, "distance"),
            .latitude = requireDoubleText(object, "latitude"),
            .longitude = requireDoubleText(object, "longitude"),
            .city = object.ifPresent<std::string_view>("city")};
}

ServerShort ServerShort::decode(const Platform::JsonObject& object, const Platform::JsonDecoder& /*decoder*/) {
    const auto fields = readServerShort(object);
    ServerShort server;
    server.id = fields.id;
    server.apiName = fields.apiName;
    server.displayName = fields.displayName;
    server.ip = fields.ip;
    server.ipv6 = fields.ipv6;
    server.maxUsers = fields.maxUsers;
    server.currentUsers = fields.currentUsers;
    server.countryCode = fields.countryCode;
    server.distance = fields.distance;
    server.latitude = fields.latitude;
    server.longitude = fields.longitude;
    server.city = fields.city;
    return server;
}

}  // namespace Tarnwick_API
