#include <Tarnwick_API/Records/LocationType.hpp>

#include <Tarnwick_API/Records/LenientReading.hpp>

namespace Tarnwick_API {

std::optional<LocationType> locationTypeFrom(std::int64_t rawValue) noexcept {
    const auto type = static_cast<LocationType>(rawValue);
    switch (type) {
        case LocationType::general:
        case LocationType::downloading:
        case LocationType::streaming:
        case LocationType::privateIp:
            return type;
    }
    return std::nullopt;
}

std::optional<LocationType> decodeLocationType(const Platform::JsonObject& object, std::string_view key) noexcept {
    const auto rawValue = decodeInt(object, key);
    return rawValue ? locationTypeFrom(*rawValue) : std::nullopt;
}

}  // namespace Tarnwick_API
