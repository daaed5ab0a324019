#include "DeviceRegistration.hpp"

namespace Tarnwick_API {

std::optional<DeviceRegistration> DeviceRegistration::prepare(const std::string& baseUrl,
                                                              const std::string& consumerKey,
                                                              const Platform::Uuid& device, const std::string& username,
                                                              const std::string& password) {
    const auto base = Platform::Url::fromString(baseUrl);
    if (!base) {
        return std::nullopt;
    }
    return DeviceRegistration{
        .url = base->appendingPathComponent("my/devices"),
        .parameters = {{"deviceName", device.uuidString()}, {"userName", username}, {"password", password}},
        .headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}, {"X-APP-KEY", consumerKey}}};
}

}  // namespace Tarnwick_API
