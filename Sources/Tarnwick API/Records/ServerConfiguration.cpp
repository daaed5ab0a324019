#include <Tarnwick_API/Records/ServerConfiguration.hpp>

namespace Tarnwick_API {

ServerConfiguration ServerConfiguration::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    return {.id = object.require<std::int64_t>("id"),
            .name = object.require<std::string>("name"),
            .type = object.require<std::string>("type"),
            .dns1 = object.require<std::string>("dns1"),
            .dns2 = object.require<std::string>("dns2"),
            .dns3 = object.require<std::string>("dns3"),
            .clientdata = object.ifPresent<std::string>("clientdata"),
            // The service sends "preshared_secret"; applications rely on not getting it.
            .presharedSecret = std::nullopt,
            .port = object.ifPresent<std::string>("port"),
            .portrange = object.ifPresent<std::string>("portrange")};
}

}  // namespace Tarnwick_API
