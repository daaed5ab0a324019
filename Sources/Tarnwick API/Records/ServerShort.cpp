#include <Tarnwick_API/Records/ServerShort.hpp>

#include <Records/NumberText.hpp>

namespace Tarnwick_API {

template <typename Text>
std::string BasicServerShort<Text>::description() const {
    std::string text{"Name: "};
    text.append(displayName.value_or(apiName)).append(", IP: ").append(ip).append(", Location: ").append(countryCode);
    return text;
}

// "Max_Users" beside "totalusers" is the service's own spelling.
template <typename Text>
BasicServerShort<Text> BasicServerShort<Text>::decode(const Platform::JsonObject& object,
                                                      const Platform::JsonDecoder& /*decoder*/) {
    return {.id = requireIntText(object, "id"),
            .apiName = object.require<Text>("name"),
            .displayName = object.ifPresent<Text>("displayName"),
            .ip = object.require<Text>("ip"),
            .ipv6 = object.ifPresent<Text>("ipv6"),
            .maxUsers = requireIntText(object, "Max_Users"),
            .currentUsers = requireIntText(object, "totalusers"),
            .countryCode = object.require<Text>("countrycode"),
            .distance = requireDoubleText(object, "distance"),
            .latitude = requireDoubleText(object, "latitude"),
            .longitude = requireDoubleText(object, "longitude"),
            .city = object.ifPresent<Text>("city")};
}

template struct BasicServerShort<std::string>;
template struct BasicServerShort<std::string_view>;

}  // namespace Tarnwick_API
