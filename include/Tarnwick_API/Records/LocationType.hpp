#pragma once

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// What a country or server is meant for. The values are the service's.
enum class LocationType : std::int64_t { general = 0, downloading = 1, streaming = 2, privateIp = 3 };

/// The type with this number; none for any other number.
[[nodiscard]] std::optional<LocationType> locationTypeFrom(std::int64_t rawValue) noexcept;

/// The type in a member that `decodeInt` can read; none for an unknown number as well.
[[nodiscard]] std::optional<LocationType> decodeLocationType(const Platform::JsonObject& object,
                                                             std::string_view key) noexcept;

}  // namespace Tarnwick_API
