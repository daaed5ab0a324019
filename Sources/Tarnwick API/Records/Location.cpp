#include <Tarnwick_API/Records/Location.hpp>

namespace Tarnwick_API {

Location Location::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    return {.ip = object.require<std::string>("ip"),
            .country = object.require<std::string>("countryname"),
            .countryCode = object.require<std::string>("countrycode"),
            .city = object.ifPresent<std::string>("city"),
            .latitude = object.ifPresent<double>("latitude"),
            .longitude = object.ifPresent<double>("longitude")};
}

}  // namespace Tarnwick_API
