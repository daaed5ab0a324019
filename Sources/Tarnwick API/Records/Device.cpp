#include <Tarnwick_API/Records/Device.hpp>

#include <Records/DateText.hpp>
#include <Records/NumberText.hpp>

#include <string_view>

namespace Tarnwick_API {

Device Device::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    Device device;
    device.id = requireIntText(object, "id");
    device.token = object.require<std::string>("token");
    device.deviceName = object.ifPresent<std::string>("machine_name");
    if (const auto created = object.ifPresent<std::string_view>("created")) {
        device.created = parse12HourDate(*created);
    }
    object.nested("consumer", [&](const Platform::JsonObject& consumer) {
        device.name = consumer.ifPresent<std::string>("name");
        device.type = deviceTypeFrom(consumer.require<std::string_view>("device_type"));
    });
    return device;
}

}  // namespace Tarnwick_API
