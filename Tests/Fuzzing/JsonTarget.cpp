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
        const bool isInteger = theirs.is_number_integer() && (theirs < 0 || theirs.get<std::uint64_t>() <= INT64_MAX);
        return ours.number() == theirs.get<double>() && (!isInteger || ours.integer() == theirs.get<std::int64_t>());
    }
    return (theirs.is_string() && ours.string() == theirs.get<std::string>()) ||
           (theirs.is_boolean() && ours.boolean() == theirs.get<bool>()) ||
           (theirs.is_null() && ours.type() == JsonType::null);
}

void compare(const Bytes& text, JsonDocument::Content content, const json& expected) {
    try {
        const JsonDocument document{text, content};
        require(!expected.is_discarded() && isSame(document.root(), expected), "what is taken is read as it stands");
    } catch (const DecodingError&) {
        require(expected.is_discarded(), "JSON is taken");
    }
}

void compareInPieces(const Bytes& text, std::size_t pieceLength, const json& expected) {
    JsonArrayPieces pieces{text, pieceLength};
    std::size_t index = 0;
    try {
        while (const auto elements = pieces.next()) {
            for (const JsonValue element : *elements) {
                require(!expected.is_array() || (index < expected.size() && isSame(element, expected[index])),
                        "pieces have the elements of the whole");
                ++index;
            }
        }
        require(expected.is_array() && index == expected.size(), "all pieces make a list");
    } catch (const DecodingError&) {
        require(!expected.is_array(), "a list is taken in pieces");
    }
}

void fuzz(FuzzInput input) {
    auto text = input.rest();
    const auto expected = independentlyRead(text);
    compare(text, JsonDocument::Content::ordinary, expected);
    compareInPieces(text, 1, expected);
    compareInPieces(text, 20, expected);
    text.reserve(text.size() + JsonDocument::padding);
    compare(text, JsonDocument::Content::secret, expected);
}
