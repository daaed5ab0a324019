#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/LocationType.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// A favourite that is a whole country, or a content service in it.
struct TARNWICK_API_EXPORT FavoriteCountry : ApiItem {
    std::string countryCode;
    std::optional<std::string> serviceName;
    /// Any number of 64 bits.
    std::optional<std::int64_t> serviceId;
    std::optional<LocationType> type;

    [[nodiscard]] static FavoriteCountry decode(const Platform::JsonObject& object,
                                                const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
