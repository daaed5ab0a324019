#include <Tarnwick_API/Records/FavoriteCountry.hpp>

#include <Tarnwick_API/Records/LenientReading.hpp>

namespace Tarnwick_API {

FavoriteCountry FavoriteCountry::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    FavoriteCountry country;
    country.countryCode = object.require<std::string>("countryCode");
    country.serviceName = decodeString(object, "name");
    country.serviceId = decodeInt(object, "content_id");
    country.type = decodeLocationType(object, "type");
    return country;
}

}  // namespace Tarnwick_API
