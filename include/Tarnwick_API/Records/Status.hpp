#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/Location.hpp>
#include <Tarnwick_API/Records/MinVersion.hpp>

#include <optional>
#include <string>

namespace Tarnwick_API {

/// What the service sees of the client, and expects of it.
struct TARNWICK_API_EXPORT Status : ApiItem {
    /// The client's public address.
    std::string ip;
    MinVersion minVersion;
    /// Seconds between two looks at the status. May be NaN, infinite, negative or huge where the service writes it so;
    /// who sets a timer by it sees that it fits.
    double statusUpdateInterval = 1200;
    std::optional<std::string> apiVersion;
    std::optional<Location> location;

    [[nodiscard]] static Status decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
