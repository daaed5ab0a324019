#include <Tarnwick_API/Records/FavoriteEntry.hpp>

#include <utility>

namespace Tarnwick_API {

using Platform::JsonArray;
using Platform::JsonDocument;
using Platform::JsonObject;
using Platform::JsonValue;

FavoriteEntry favoriteEntryFrom(FavoriteItem item) {
    if (item.isServer()) {
        return Server{std::move(item)};
    }
    return Country{std::move(item)};
}

std::vector<FavoriteEntry> decodeFavoriteEntries(const Platform::Bytes& bytes) {
    const Platform::JsonDecoder decoder;
    const JsonDocument document{bytes};
    return document.root().require<JsonArray>().map([&](const JsonValue& element) {
        return favoriteEntryFrom(FavoriteItem::decode(element.require<JsonObject>(), decoder));
    });
}

}  // namespace Tarnwick_API
