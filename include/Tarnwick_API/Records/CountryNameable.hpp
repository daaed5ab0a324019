#pragma once

#include <Tarnwick_API/Export.hpp>

#include <concepts>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// Base of the records that can name their country to the user.
struct TARNWICK_API_EXPORT CountryNameable {
    /// The name of the region with this code in the user's language; empty for an unknown code.
    [[nodiscard]] static std::string countryName(std::string_view countryCode);
};

/// A record with `localizedCountryName()`.
template <typename T>
concept CountryNamed = std::derived_from<T, CountryNameable> && requires(const T& record) {
    { record.localizedCountryName() } -> std::same_as<std::string>;
};

}  // namespace Tarnwick_API
