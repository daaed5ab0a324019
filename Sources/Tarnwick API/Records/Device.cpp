#include <Tarnwick_API/Records/Device.hpp>

#include <Records/DateText.hpp>
#include <Records/NumberText.hpp>

#include <string_view>

namespace Tarnwick_API {

Device Device::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    Device device;
    device.id = requireIntText(object, "id");
    device.token = object.require<std::string_view>("token");
    if (const auto machine = object.ifPresent<std::string_view>("machine_name")) {
        device.deviceName.emplace(*machine);
    }
    if (const auto created = object.ifPresent<std::string_view>("created")) {
        device.created = parse12HourDate(*created);
    }
    object.nested("consumer", [&](const Platform::JsonObject& consumer) {
        if (const auto name = consumer.ifPresent<std::string_view>("name")) {
            device.name.emplace(*name);
        }
        device.type = deviceTypeFrom(consumer.require<std::string_view>("device_type"));
    });
    return device;
}

}  // namespace Tarnwick_API
