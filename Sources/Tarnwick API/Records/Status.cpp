#include <Tarnwick_API/Records/Status.hpp>

#include <Tarnwick_API/Records/LenientReading.hpp>

namespace Tarnwick_API {

using Platform::JsonObject;

Status Status::decode(const JsonObject& object, const Platform::JsonDecoder& decoder) {
    Status status;
    status.ip = object.require<std::string>("realip");
    status.minVersion = object.nested(
        "required_client_versions", [&](const JsonObject& versions) { return MinVersion::decode(versions, decoder); });
    if (const auto interval = decodeTimeInterval(object, "status_update_interval")) {
        status.statusUpdateInterval = *interval;
    }
    status.location = object.nestedIfPresent(
        "location", [&](const JsonObject& location) { return Location::decode(location, decoder); });
    status.apiVersion = decodeString(object, "phpapi");
    return status;
}

}  // namespace Tarnwick_API
