#include "Model/Caller.hpp"

#include <algorithm>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace TarnwickService {

Caller makeCaller(const std::string& address, const std::string& zone, const std::vector<Place>& places) {
    const auto place = std::ranges::find(places, zone, &Place::zone);
    if (place == places.end()) {
        throw std::invalid_argument("no place has the zone " + zone);
    }
    return {address, *place};
}

nlohmann::ordered_json locationRecord(const Caller& caller) {
    return {{"ip", caller.address},
            {"countryname", caller.place.countryName},
            {"countrycode", caller.place.countryCode},
            {"city", caller.place.city},
            {"latitude", caller.place.coordinates.latitude},
            {"longitude", caller.place.coordinates.longitude},
            {"timezone", caller.place.zone},
            {"isp", nullptr},
            {"protected", false}};
}

}  // namespace TarnwickService
