#pragma once

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// The members of a short server, with its texts still where they were parsed: most of a long list's servers keep only
/// a part of them.
struct ServerShortFields {
    std::int64_t id;
    std::string_view apiName;
    std::optional<std::string_view> displayName;
    std::string_view ip;
    std::optional<std::string_view> ipv6;
    std::int64_t maxUsers;
    std::int64_t currentUsers;
    std::string_view countryCode;
    std::optional<double> distance;
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<std::string_view> city;
};

/// Throws `Platform::DecodingError` or `JsonDecodeError`.
[[nodiscard]] ServerShortFields readServerShort(const Platform::JsonObject& object);

}  // namespace Tarnwick_API
