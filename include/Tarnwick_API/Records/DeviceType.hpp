#pragma once

#include <string_view>

namespace Tarnwick_API {

/// The platform of a device.
enum class DeviceType { mac, ios, windows, android, other };

/// The type that the service calls "mac", "ios", "win" or "android"; `other` for any other text.
[[nodiscard]] constexpr DeviceType deviceTypeFrom(std::string_view text) noexcept {
    if (text == "mac") {
        return DeviceType::mac;
    }
    if (text == "ios") {
        return DeviceType::ios;
    }
    if (text == "win") {
        return DeviceType::windows;
    }
    if (text == "android") {
        return DeviceType::android;
    }
    return DeviceType::other;
}

}  // namespace Tarnwick_API
