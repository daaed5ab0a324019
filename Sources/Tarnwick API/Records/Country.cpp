#include <Tarnwick_API/Records/Country.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Records/LenientReading.hpp>

#include <utility>

namespace Tarnwick_API {

Country::Country(FavoriteItem item)
    : countryCode{std::move(item.countryCode)},
      serviceName{std::move(item.name)},
      serviceId{item.serviceId},
      type{item.type} {
}

std::string Country::localizedCountryName() const {
    // Stands for no country: the service's code for addresses of one's own.
    if (countryCode == "AB") {
        return Platform::Bundle::main()->localizedText("CountryNameReturn", "Private IP");
    }
    return countryName(countryCode);
}

Country Country::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    Country country;
    country.full = decodeBool(object, "full").value_or(false);
    country.countryCode = object.require<std::string>("countrycode");
    country.maxUsers = decodeInt(object, "max_users");
    country.currentUsers = decodeInt(object, "total_users");
    country.distance = decodeDouble(object, "distance");
    country.serviceName = decodeString(object, "name");
    country.serviceId = decodeInt(object, "content_id");
    country.type = decodeLocationType(object, "type");
    return country;
}

}  // namespace Tarnwick_API
