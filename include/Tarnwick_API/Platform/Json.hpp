#pragma once

#include <Tarnwick_API/Platform/Bytes.hpp>
#include <Tarnwick_API/Platform/DecodingError.hpp>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

enum class JsonType { null, boolean, number, string, array, object };

class JsonObject;
class JsonArray;

/// One value of a parsed JSON text. A view: valid while its `JsonDocument` lives.
class JsonValue {
public:
    [[nodiscard]] JsonType type() const noexcept;

    /// Reads without conversion between JSON types; another type gives none. None of these throws or allocates.
    [[nodiscard]] std::optional<bool> boolean() const noexcept;
    /// A whole number within 64 signed bits, however it is written (`42`, `42.0`, `4.2e1`).
    [[nodiscard]] std::optional<std::int64_t> integer() const noexcept;
    [[nodiscard]] std::optional<double> number() const noexcept;
    [[nodiscard]] std::optional<std::string_view> string() const noexcept;
    [[nodiscard]] std::optional<JsonObject> object() const noexcept;
    [[nodiscard]] std::optional<JsonArray> array() const noexcept;

    /// Strict reads: throw `DecodingError` with an empty path when the value is null, of another type, or a number
    /// that does not fit.
    template <typename T>
    [[nodiscard]] T require() const;

private:
    friend class JsonDocument;
    friend class JsonObject;
    friend class JsonArray;
    using Storage = std::array<std::uint64_t, 2>;
    explicit JsonValue(const Storage& storage) noexcept : storage_{storage} {}
    Storage storage_;
};

/// The members of one JSON object. Names are matched byte for byte after unescaping; of several members of one
/// name the first counts. A view: valid while its `JsonDocument` lives.
class JsonObject {
public:
    /// The member's value, null included, or none when it is missing. Neither throws nor allocates.
    [[nodiscard]] std::optional<JsonValue> find(std::string_view key) const noexcept;

    /// The member, which must be present, not null, and of type `T`: `bool`, `std::int64_t`, `double`,
    /// `std::string`, `std::string_view`, `JsonObject` or `JsonArray`. Throws `DecodingError` otherwise.
    template <typename T>
    [[nodiscard]] T require(std::string_view key) const;

    /// The member, or none when it is missing or null. Throws `DecodingError` when it is of another type than `T`.
    template <typename T>
    [[nodiscard]] std::optional<T> ifPresent(std::string_view key) const;

    /// What `read` makes of the member, which must be an object. Errors thrown inside name the path from here.
    template <typename Read>
    [[nodiscard]] auto nested(std::string_view key, Read&& read) const;

private:
    friend class JsonValue;
    explicit JsonObject(const JsonValue::Storage& storage) noexcept : storage_{storage} {}
    [[noreturn]] static void throwKeyNotFound(std::string_view key);
    JsonValue::Storage storage_;
};

/// The elements of one JSON array. A view: valid while its `JsonDocument` lives.
class JsonArray {
public:
    [[nodiscard]] std::size_t size() const noexcept;

    /// What `read` makes of each element in turn. Errors thrown inside name the path from here.
    template <typename Read>
    [[nodiscard]] auto map(Read&& read) const;

    /// Walks the elements in order.
    class Iterator {
    public:
        [[nodiscard]] JsonValue operator*() const noexcept;
        Iterator& operator++() noexcept;
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        friend class JsonArray;
        explicit Iterator(const JsonValue::Storage& storage) noexcept : storage_{storage} {}
        JsonValue::Storage storage_;
    };
    [[nodiscard]] Iterator begin() const noexcept;
    [[nodiscard]] Iterator end() const noexcept;

private:
    friend class JsonValue;
    explicit JsonArray(const JsonValue::Storage& storage) noexcept : storage_{storage} {}
    JsonValue::Storage storage_;
};

/// A parsed JSON text (RFC 8259, UTF-8, an optional byte-order mark, at most 512 containers deep).
class JsonDocument {
public:
    /// Parses `text` and throws `DecodingError` (`dataCorrupted`, empty path) when it is no JSON. The text is not
    /// needed afterwards. It is read in place when its capacity leaves `padding` bytes behind its end, else copied.
    explicit JsonDocument(const Bytes& text);
    ~JsonDocument();
    JsonDocument(const JsonDocument&) = delete;
    JsonDocument& operator=(const JsonDocument&) = delete;

    [[nodiscard]] JsonValue root() const noexcept;

    /// Spare bytes that let a text be parsed without a copy.
    static constexpr std::size_t padding = 64;

private:
    class Parser;
    friend struct ParserPool;
    std::unique_ptr<Parser> parser_;
    JsonValue::Storage root_{};
};

template <>
bool JsonValue::require<bool>() const;
template <>
std::int64_t JsonValue::require<std::int64_t>() const;
template <>
double JsonValue::require<double>() const;
template <>
std::string_view JsonValue::require<std::string_view>() const;
template <>
std::string JsonValue::require<std::string>() const;
template <>
JsonObject JsonValue::require<JsonObject>() const;
template <>
JsonArray JsonValue::require<JsonArray>() const;

template <typename T>
T JsonObject::require(std::string_view key) const {
    const auto member = find(key);
    if (!member) {
        throwKeyNotFound(key);
    }
    try {
        return member->require<T>();
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

template <typename T>
std::optional<T> JsonObject::ifPresent(std::string_view key) const {
    const auto member = find(key);
    if (!member || member->type() == JsonType::null) {
        return std::nullopt;
    }
    try {
        return member->require<T>();
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

template <typename Read>
auto JsonObject::nested(std::string_view key, Read&& read) const {
    const auto object = require<JsonObject>(key);
    try {
        return read(object);
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

template <typename Read>
auto JsonArray::map(Read&& read) const {
    std::vector<decltype(read(std::declval<JsonValue>()))> results;
    results.reserve(size());
    try {
        for (const JsonValue element : *this) {
            results.push_back(read(element));
        }
    } catch (const DecodingError& error) {
        throw error.within(results.size());
    }
    return results;
}

}  // namespace Platform
