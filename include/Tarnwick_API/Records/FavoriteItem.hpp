#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/LocationType.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// One favourite: a server when it has an address, otherwise a whole country.
struct TARNWICK_API_EXPORT FavoriteItem : ApiItem {
    std::optional<std::string> ip;
    std::string countryCode;
    /// The server's, or the content service's.
    std::optional<std::string> name;
    /// Any number of 64 bits.
    std::optional<std::int64_t> serviceId;
    std::optional<LocationType> type;

    [[nodiscard]] bool isServer() const noexcept { return ip.has_value(); }

    /// Never fails: what can't be read counts as missing.
    [[nodiscard]] static FavoriteItem decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
