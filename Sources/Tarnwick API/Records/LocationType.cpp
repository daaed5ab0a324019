#include <Tarnwick_API/Records/LocationType.hpp>

#include <Tarnwick_API/Records/LenientReading.hpp>

namespace Tarnwick_API {

template <std::same_as<LocationType> Enumeration>
std::optional<Enumeration> fromRawValue(std::int64_t number) noexcept {
    const auto type = static_cast<LocationType>(number);
    switch (type) {
        case LocationType::general:
        case LocationType::downloading:
        case LocationType::streaming:
        case LocationType::privateIp:
            return type;
    }
    return std::nullopt;
}
template std::optional<LocationType> fromRawValue<LocationType>(std::int64_t) noexcept;

std::optional<LocationType> decodeLocationType(const Platform::JsonObject& object, std::string_view key) noexcept {
    const auto number = decodeInt(object, key);
    return number ? fromRawValue<LocationType>(*number) : std::nullopt;
}

}  // namespace Tarnwick_API
