// A JSON text is taken, and read, as by a reader that shares nothing with ours, wherever it lies and in whatever
// pieces.

#include <Platform/Json/JsonArrayPieces.hpp>

#include "FuzzTarget.hpp"

#include <set>

#include <nlohmann/json.hpp>

using namespace Tarnwick_API::Platform;
using nlohmann::json;

/// "Discarded" for what is not to be taken. Of several members of one name it has the first, as ours.
json independentlyRead(const std::string& text) {
    constexpr int greatestDepth = 512;
    bool isGood = text.find('\0') == std::string::npos;  // which that reader takes for the end
    std::vector<std::set<std::string>> names;
    const auto isWanted = [&](int depth, json::parse_event_t event, json& parsed) {
        if (event == json::parse_event_t::object_start || event == json::parse_event_t::array_start) {
            names.resize(static_cast<std::size_t>(depth) + 1);
            names.emplace_back();
            isGood = isGood && depth < greatestDepth;
        }
        return event != json::parse_event_t::key || names[static_cast<std::size_t>(depth)].insert(parsed).second;
    };
    auto read = json::parse(text, isWanted, false);
    return isGood ? read : json(json::value_t::discarded);
}

bool isSame(const JsonValue& ours, const json& theirs) {
    if (const auto object = ours.object(); object && theirs.is_object()) {
        return std::ranges::all_of(theirs.items(), [&](const auto& item) {
            const auto member = object->find(item.key());
            return member && isSame(*member, item.value());
        });
    }
    if (const auto array = ours.array(); array && theirs.is_array()) {
        return array->size() == theirs.size() && std::equal(array->begin(), array->end(), theirs.begin(), isSame);
    }
    if (theirs.is_number()) {
        const bool fits = !theirs.is_number_unsigned() || theirs.get<std::uint64_t>() <= std::uint64_t{INT64_MAX};
        const bool isInteger = theirs.is_number_integer() && fits;
        return ours.number() == theirs.get<double>() && (!isInteger || ours.integer() == theirs.get<std::int64_t>());
    }
    return (theirs.is_string() && ours.string() == theirs.get<std::string>()) ||
           (theirs.is_boolean() && ours.boolean() == theirs.get<bool>()) ||
           (theirs.is_null() && ours.type() == JsonType::null);
}

bool isTaken(const auto& read) {
    try {
        read();
        return true;
    } catch (const DecodingError&) {
        return false;
    }
}

void fuzz(FuzzInput input) {
    auto text = input.rest();
    const auto expected = independentlyRead(text);
    for (const auto content : {JsonDocument::Content::ordinary, JsonDocument::Content::secret}) {
        const auto read = [&] {
            const JsonDocument document{text, content};
            require(expected.is_discarded() || isSame(document.root(), expected), "JSON is read as it stands");
        };
        require(isTaken(read) == !expected.is_discarded(), "JSON is taken, and nothing else");
        text.reserve(text.size() + JsonDocument::padding);  // where it is parsed in place
    }
    for (const std::size_t pieceLength : {1, 20}) {
        std::size_t index = 0;
        const auto read = [&] {
            JsonArrayPieces pieces{text, pieceLength};
            while (const auto elements = pieces.next()) {
                for (const JsonValue element : *elements) {
                    const bool isThere = !expected.is_array() || index < expected.size();
                    require(isThere && (!expected.is_array() || isSame(element, expected[index])),
                            "pieces are the whole");
                    ++index;
                }
            }
        };
        require(isTaken(read) == expected.is_array(), "a list is taken in pieces, and nothing else");
        require(!expected.is_array() || index == expected.size(), "all pieces make the list");
    }
}
