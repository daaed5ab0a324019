#include <Tarnwick_API/Records/FavoriteEntry.hpp>

#include <Platform/Json/JsonArrayPieces.hpp>

#include <utility>

namespace Tarnwick_API {

using Platform::JsonObject;
using Platform::JsonValue;

FavoriteEntry favoriteEntryFrom(FavoriteItem item) {
    if (item.isServer()) {
        return Server{std::move(item)};
    }
    return Country{std::move(item)};
}

std::vector<FavoriteEntry> decodeFavoriteEntries(const Platform::Bytes& bytes) {
    return Platform::mapArrayText<FavoriteEntry>(bytes, [decoder = Platform::JsonDecoder{}](const JsonValue& element) {
        return favoriteEntryFrom(FavoriteItem::decode(element.require<JsonObject>(), decoder));
    });
}

}  // namespace Tarnwick_API
