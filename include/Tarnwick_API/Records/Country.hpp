#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/CountryNameable.hpp>
#include <Tarnwick_API/Records/FavoriteItem.hpp>
#include <Tarnwick_API/Records/LocationType.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// A country that one can connect to, or a content service in it, with its load.
struct TARNWICK_API_EXPORT Country : ApiItem, CountryNameable {
    std::string countryCode;
    bool full = false;
    /// As the service writes them: 0, negative, or more users than places also.
    std::optional<std::int64_t> maxUsers;
    std::optional<std::int64_t> currentUsers;
    /// In the service's own unit. May be NaN, infinite, negative or huge where the service writes it so.
    std::optional<double> distance;
    std::optional<std::string> serviceName;
    /// Any number of 64 bits.
    std::optional<std::int64_t> serviceId;
    std::optional<LocationType> type;

    Country() = default;
    /// The id is 0, not the favourite's.
    explicit Country(FavoriteItem item);

    /// The country's name in the user's language; for the service's own code "AB", the application's text
    /// "CountryNameReturn", by default "Private IP"; empty for an unknown code.
    [[nodiscard]] std::string localizedCountryName() const;

    [[nodiscard]] static Country decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

static_assert(CountryNamed<Country>);

}  // namespace Tarnwick_API
