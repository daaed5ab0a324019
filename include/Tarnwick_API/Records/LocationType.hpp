#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// What a country or server is meant for. The values are the service's.
enum class TARNWICK_API_EXPORT LocationType : std::int64_t {
    general = 0,
    downloading = 1,
    streaming = 2,
    privateIp = 3
};

/// The service's number of a type.
[[nodiscard]] constexpr std::int64_t rawValue(LocationType type) noexcept {
    return static_cast<std::int64_t>(type);
}

/// The type with this number; none for any other number.
template <std::same_as<LocationType> Enumeration>
[[nodiscard]] TARNWICK_API_EXPORT std::optional<Enumeration> fromRawValue(std::int64_t number) noexcept;

/// The type in a member that `decodeInt` can read; none for an unknown number as well.
[[nodiscard]] TARNWICK_API_EXPORT std::optional<LocationType> decodeLocationType(const Platform::JsonObject& object,
                                                                                 std::string_view key) noexcept;

}  // namespace Tarnwick_API
