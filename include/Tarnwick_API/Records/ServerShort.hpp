#pragma once

#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// A server as lists describe it. Every number of this shape arrives as a text.
struct ServerShort {
    std::int64_t id = 0;
    /// The server's internal name.
    std::string apiName;
    std::optional<std::string> displayName;
    std::string ip;
    std::optional<std::string> ipv6;
    std::int64_t maxUsers = 0;
    std::int64_t currentUsers = 0;
    std::string countryCode;
    /// None as well when the text is no number, as are the coordinates.
    std::optional<double> distance;
    /// Degrees.
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<std::string> city;

    /// For logging.
    [[nodiscard]] std::string description() const;

    /// Throws `JsonDecodeError` when the id or a count is a text but no number.
    [[nodiscard]] static ServerShort decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
