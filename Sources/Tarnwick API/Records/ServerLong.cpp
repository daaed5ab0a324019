#include <Tarnwick_API/Records/ServerLong.hpp>

namespace Tarnwick_API {

using Platform::JsonObject;
using Platform::JsonValue;

template <typename Text>
std::string BasicServerLong<Text>::description() const {
    std::string text{"Name: "};
    text.append(displayName.value_or(apiName)).append(", IP: ").append(ip).append(", Host: ").append(hostname);
    return text.append(", Location: ").append(location.countrycode);
}

template <typename Text>
BasicServerLong<Text> BasicServerLong<Text>::decode(const JsonObject& object, const Platform::JsonDecoder& decoder) {
    const auto decodeLocation = [](const JsonObject& member) {
        return Location{.countrycode = member.require<Text>("countrycode"),
                        .language = member.require<Text>("language"),
                        .city = member.ifPresent<Text>("city")};
    };
    const auto decodeStatistics = [](const JsonObject& member) {
        return Statistics{.currentUsers = member.require<std::int64_t>("totalusers"),
                          .maxUsers = member.require<std::int64_t>("maxusers")};
    };
    const auto decodeConfiguration = [&](const JsonValue& element) {
        return Configuration::decode(element.require<JsonObject>(), decoder);
    };
    return {.id = object.require<std::int64_t>("id"),
            .apiName = object.require<Text>("name"),
            .displayName = object.ifPresent<Text>("displayName"),
            .hostname = object.require<Text>("dnsname"),
            .ip = object.require<Text>("ip"),
            .ipv6 = object.ifPresent<Text>("ipv6"),
            .location = object.nested("location", decodeLocation),
            .statistics = object.nested("statistics", decodeStatistics),
            .configurations = object.nestedArray("configurations", decodeConfiguration)};
}

template struct BasicServerLong<std::string>;
template struct BasicServerLong<std::string_view>;

}  // namespace Tarnwick_API
