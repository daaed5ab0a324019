#pragma once

#include <Tarnwick_API/Platform/Bytes.hpp>
#include <Tarnwick_API/Platform/Json.hpp>
#include <Tarnwick_API/Platform/JsonArrayText.hpp>

#include <concepts>
#include <vector>

namespace Platform {

class JsonDecoder;

/// A record that can be made of a JSON object. It may throw `DecodingError` or errors of its own, and it may look at
/// the decoder's class to choose between several shapes.
template <typename T>
concept Decodable = requires(const JsonObject& object, const JsonDecoder& decoder) {
    { T::decode(object, decoder) } -> std::same_as<T>;
};

/// Makes records of JSON texts. Stateless; may be used on any thread.
class JsonDecoder {
public:
    JsonDecoder() = default;
    JsonDecoder(const JsonDecoder&) = delete;
    JsonDecoder& operator=(const JsonDecoder&) = delete;
    virtual ~JsonDecoder() = default;

    /// The record that the text's one object holds. Throws `DecodingError`, and what the record throws.
    template <Decodable Record>
    [[nodiscard]] Record decode(const Bytes& text) const {
        const JsonDocument document{text};
        return Record::decode(document.root().template require<JsonObject>(), *this);
    }

    /// The records that the text's array holds; one bad element fails them all. Throws as `decode` does.
    template <Decodable Record>
    [[nodiscard]] std::vector<Record> decodeArray(const Bytes& text) const {
        return mapArrayText(text, [this](const JsonValue element) {
            return Record::decode(element.template require<JsonObject>(), *this);
        });
    }
};

}  // namespace Platform
