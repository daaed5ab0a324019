#include <Tarnwick_API/Records/MinVersion.hpp>

#include <string_view>

namespace Tarnwick_API {

MinVersion MinVersion::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    return {.mac = ClientVersion{object.require<std::string_view>("mac_7")}};
}

}  // namespace Tarnwick_API
