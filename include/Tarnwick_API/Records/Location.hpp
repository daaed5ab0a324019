#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <optional>
#include <string>

namespace Tarnwick_API {

/// The client's public address, and where the service believes it to be.
struct TARNWICK_API_EXPORT Location {
    std::string ip;
    /// The country's name as the service writes it.
    std::string country;
    std::string countryCode;
    std::optional<std::string> city;
    /// Degrees; finite, but of any size and sign that the service writes.
    std::optional<double> latitude;
    std::optional<double> longitude;

    [[nodiscard]] static Location decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
