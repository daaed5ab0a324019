#include <Tarnwick_API/Records/FavoriteItem.hpp>

#include <Tarnwick_API/Records/LenientReading.hpp>

namespace Tarnwick_API {

FavoriteItem FavoriteItem::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    FavoriteItem item;
    item.id = decodeInt(object, "server_id").value_or(0);
    item.ip = decodeString(object, "ip");
    item.countryCode = decodeString(object, "countryCode").value_or("");
    item.name = decodeString(object, "name");
    item.serviceId = decodeInt(object, "content_id");
    item.type = decodeLocationType(object, "type");
    return item;
}

}  // namespace Tarnwick_API
