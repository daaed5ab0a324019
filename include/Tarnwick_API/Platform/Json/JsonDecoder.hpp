#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <concepts>
#include <cstddef>
#include <functional>
#include <vector>

namespace Tarnwick_API::Platform {

class JsonDecoder;

/// A record that can be made of a JSON object. It may throw `DecodingError` or errors of its own, and it may look at
/// the decoder's class to choose between several shapes.
template <typename T>
concept Decodable = requires(const JsonObject& object, const JsonDecoder& decoder) {
    { T::decode(object, decoder) } -> std::same_as<T>;
};

/// Makes records of JSON texts. Stateless; may be used on any thread.
class TARNWICK_API_EXPORT JsonDecoder {
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

    /// The records that the text's array holds; one bad element fails them all. Throws as `decode` does. The vector
    /// takes at most 24 times the text's length, or 16 MiB for a short text: a list of more elements than that has room
    /// for is an error too (`dataCorrupted`, at the first one without).
    template <Decodable Record>
    [[nodiscard]] std::vector<Record> decodeArray(const Bytes& text) const {
        std::vector<Record> records;
        readArray(
            text, sizeof(Record), [&records](const std::size_t count) { records.reserve(count); },
            [&records, this](const JsonValue& element) {
                const auto record = [&] { return Record::decode(element.template require<JsonObject>(), *this); };
                records.emplace_back(Detail::ResultOf<decltype(record)>{record});
            });
        return records;
    }

private:
    /// Calls `read` with each element, and `reserve` with the number of records, of `recordSize` bytes each, to have
    /// room for before there are more.
    static void readArray(const Bytes& text, std::size_t recordSize, const std::function<void(std::size_t)>& reserve,
                          const std::function<void(const JsonValue&)>& read);
};

}  // namespace Tarnwick_API::Platform
