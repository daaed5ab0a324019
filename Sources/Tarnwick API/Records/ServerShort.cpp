#include <Tarnwick_API/Records/ServerShort.hpp>

#include <Tarnwick API/Records/NumberText.hpp>

namespace Tarnwick_API {

std::string ServerShort::description() const {
    return "Name: " + displayName.value_or(apiName) + ", IP: " + ip + ", Location: " + countryCode;
}

ServerShort ServerShort::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    return {.id = requireIntText(object, "id"),
            .apiName = object.require<std::string>("name"),
            .displayName = object.ifPresent<std::string>("displayName"),
            .ip = object.require<std::string>("ip"),
            .ipv6 = object.ifPresent<std::string>("ipv6"),
            .maxUsers = requireIntText(object, "Max_Users"),
            .currentUsers = requireIntText(object, "totalusers"),
            .countryCode = object.require<std::string>("countrycode"),
            .distance = requireDoubleText(object, "distance"),
            .latitude = requireDoubleText(object, "latitude"),
            .longitude = requireDoubleText(object, "longitude"),
            .city = object.ifPresent<std::string>("city")};
}

}  // namespace Tarnwick_API
