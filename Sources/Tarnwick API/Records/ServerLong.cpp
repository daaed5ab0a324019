#include <Tarnwick_API/Records/ServerLong.hpp>

namespace Tarnwick_API {

using Platform::JsonObject;
using Platform::JsonValue;

std::string ServerLong::description() const {
    return "Name: " + displayName.value_or(apiName) + ", IP: " + ip + ", Host: " + hostname +
           ", Location: " + location.countrycode;
}

ServerLong ServerLong::decode(const JsonObject& object, const Platform::JsonDecoder& decoder) {
    const auto decodeLocation = [](const JsonObject& member) {
        return Location{.countrycode = member.require<std::string>("countrycode"),
                        .language = member.require<std::string>("language"),
                        .city = member.ifPresent<std::string>("city")};
    };
    const auto decodeStatistics = [](const JsonObject& member) {
        return Statistics{.currentUsers = member.require<std::int64_t>("totalusers"),
                          .maxUsers = member.require<std::int64_t>("maxusers")};
    };
    const auto decodeConfiguration = [&](const JsonValue& element) {
        return Configuration::decode(element.require<JsonObject>(), decoder);
    };
    return {.id = object.require<std::int64_t>("id"),
            .apiName = object.require<std::string>("name"),
            .displayName = object.ifPresent<std::string>("displayName"),
            .hostname = object.require<std::string>("dnsname"),
            .ip = object.require<std::string>("ip"),
            .ipv6 = object.ifPresent<std::string>("ipv6"),
            .location = object.nested("location", decodeLocation),
            .statistics = object.nested("statistics", decodeStatistics),
            .configurations = object.nestedArray("configurations", decodeConfiguration)};
}

}  // namespace Tarnwick_API
