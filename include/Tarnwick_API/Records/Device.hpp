#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/DeviceType.hpp>

#include <chrono>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// One registered device, or session, of the account.
struct TARNWICK_API_EXPORT Device : ApiItem {
    /// The access token registered for the device.
    std::string token;
    /// The client application's name.
    std::optional<std::string> name;
    DeviceType type = DeviceType::other;
    /// The machine's name.
    std::optional<std::string> deviceName;
    /// None as well when the service sends a date that can't be read, which any hour above 12 is.
    std::optional<std::chrono::sys_seconds> created;

    /// Throws `JsonDecodeError` when the id is a text but no number.
    [[nodiscard]] static Device decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
