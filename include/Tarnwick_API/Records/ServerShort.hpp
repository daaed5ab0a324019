#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// A server as lists describe it. Every number of this shape arrives as a text.
///
/// `Text` is `std::string`; or `std::string_view`, for who keeps only a part of a long list: the texts then stay where
/// they were parsed, and are valid while the `Platform::JsonDocument` lives.
template <typename Text>
struct TARNWICK_API_EXPORT BasicServerShort {
    /// Any number of 64 bits.
    std::int64_t id = 0;
    /// The server's internal name.
    Text apiName;
    std::optional<Text> displayName;
    Text ip;
    std::optional<Text> ipv6;
    /// As the service writes them: 0, negative, or more users than places also.
    std::int64_t maxUsers = 0;
    std::int64_t currentUsers = 0;
    Text countryCode;
    /// None as well when the text is no number, as are the coordinates. All three may be NaN, infinite, negative or
    /// huge where the service writes them so.
    std::optional<double> distance;
    /// Degrees.
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<Text> city;

    /// For logging.
    [[nodiscard]] std::string description() const;

    /// Throws `JsonDecodeError` when the id or a count is a text but no number.
    [[nodiscard]] static BasicServerShort decode(const Platform::JsonObject& object,
                                                 const Platform::JsonDecoder& decoder);
};

extern template struct TARNWICK_API_EXPORT BasicServerShort<std::string>;
extern template struct TARNWICK_API_EXPORT BasicServerShort<std::string_view>;

/// The one that keeps its texts.
using ServerShort = BasicServerShort<std::string>;

}  // namespace Tarnwick_API
