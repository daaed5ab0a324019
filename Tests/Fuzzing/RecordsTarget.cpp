// Answers as records: the fast road of lists leads where the general one does, errors included.

#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/JsonDecodeError.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>

#include "FuzzTarget.hpp"
#include "Output/RecordJson.hpp"

using namespace Tarnwick_API;
using namespace Tarnwick_API::Platform;

std::string written(const auto& record) {
    return TarnwickClient::toJson(record).dump();
}
std::string written(const FavoriteEntry& entry) {
    return std::visit([](const auto& record) { return written(record); }, entry);
}
/// What each element of `decode` is written as, or the error.
std::string outcome(const auto& decode) {
    try {
        std::string text;
        for (const auto& record : decode()) {
            text += written(record);
        }
        return text;
    } catch (const DecodingError& error) {
        return error.pathText() + ": " + error.debugDescription();
    } catch (const JsonDecodeError& error) {
        return error.what();
    }
}

/// By the general road: the text is parsed whole, and each record decoded as it is.
template <class Record>
void compare(const Bytes& text, const auto& fast, const auto& convert) {
    const auto general = [&] {
        const JsonDocument document{text};
        return document.root().require<JsonArray>().map([&](const JsonValue& element) {
            return convert(Record::decode(element.require<JsonObject>(), JsonDecoder{}));
        });
    };
    require(outcome(fast) == outcome(general), "the fast road leads where the general one does");
}

template <class Record>
void compare(const Bytes& text) {
    compare<Record>(
        text, [&] { return JsonDecoder{}.decodeArray<Record>(text); }, std::identity{});
    const auto record = ApiItem::create<Record>(text);
    const auto list = ApiItem::createArray<Record>("[" + text + "]");
    require(!record || text.starts_with('\xEF') || list.size() == 1, "a record can stand in a list");
}

void fuzz(FuzzInput input) {
    const auto text = input.rest();
    const auto server = [](auto&& record) { return Server{std::move(record)}; };
    compare<ServerShort>(
        text, [&] { return decodeServers(text, ServerJsonKind::short_); }, server);
    compare<ServerLong>(
        text, [&] { return decodeServers(text, ServerJsonKind::long_); }, server);
    compare<FavoriteItem>(
        text, [&] { return decodeFavoriteEntries(text); }, favoriteEntryFrom);
    compare<Country>(text);
    compare<Device>(text);
    compare<Location>(text);
    compare<Status>(text);
    compare<User>(text);
    const auto token = ApiItem::create<OAuthToken>(text);
    require(!token || !token->id, "version 1 has no names of tokens");
}
