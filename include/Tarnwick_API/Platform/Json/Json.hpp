#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/DecodingError.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

/// What a value is in JSON.
enum class JsonType { null, boolean, number, string, array, object };

class JsonObject;
class JsonArray;
class JsonMemberLayout;

/// Where a value stands in its document; opaque.
using JsonHandle = std::array<std::uint64_t, 2>;

/// What a JSON value can be read as.
template <typename T>
concept JsonReadable =
    std::same_as<T, bool> || std::same_as<T, std::int64_t> || std::same_as<T, double> || std::same_as<T, std::string> ||
    std::same_as<T, std::string_view> || std::same_as<T, JsonObject> || std::same_as<T, JsonArray>;

/// One value of a parsed JSON text. A view: valid while its `JsonDocument` lives.
class TARNWICK_API_EXPORT JsonValue {
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

    /// Strict read: throws `DecodingError` with an empty path when the value is null, of another type, or a number
    /// that does not fit.
    template <JsonReadable T>
    [[nodiscard]] T(require)() const;

private:
    friend class JsonDocument;
    friend struct JsonAccess;
    explicit JsonValue(const JsonHandle& handle) noexcept : handle_{handle} {}
    JsonHandle handle_;
};

/// The members of one JSON object. Names are matched byte for byte after unescaping; of several members of one
/// name the first counts. A view: valid while its `JsonDocument` lives.
class TARNWICK_API_EXPORT JsonObject {
public:
    /// The member's value, null included, or none when it is missing. Neither throws nor allocates.
    [[nodiscard]] std::optional<JsonValue> find(std::string_view key) const noexcept;

    /// The member, which must be present, not null, and of type `T`. Throws `DecodingError` otherwise.
    template <JsonReadable T>
    [[nodiscard]] T(require)(std::string_view key) const;

    /// The member, or none when it is missing or null. Throws `DecodingError` when it is of another type than `T`.
    template <JsonReadable T>
    [[nodiscard]] std::optional<T> ifPresent(std::string_view key) const;

    /// What `read` makes of the member, which must be an object. Errors thrown inside name the path from here.
    template <std::invocable<JsonObject> Read>
    [[nodiscard]] auto nested(std::string_view key, Read&& read) const;

    /// As `nested`, but none when the member is missing or null.
    template <std::invocable<JsonObject> Read>
    [[nodiscard]] auto nestedIfPresent(std::string_view key, Read&& read) const;

    /// What `read` makes of each element of the member, which must be an array. Errors thrown inside name the path
    /// from here.
    template <std::invocable<JsonValue> Read>
    [[nodiscard]] auto nestedArray(std::string_view key, Read&& read) const;

private:
    friend struct JsonAccess;
    JsonObject(const JsonHandle& handle, JsonMemberLayout* layout) noexcept : handle_{handle}, layout_{layout} {}
    JsonHandle handle_;
    JsonMemberLayout* layout_;
};

/// The elements of one JSON array. A view: valid while its `JsonDocument` lives.
class TARNWICK_API_EXPORT JsonArray {
public:
    [[nodiscard]] std::size_t size() const noexcept;

    /// Calls `visit` with each element in turn. Errors thrown inside name the path from here.
    template <std::invocable<JsonValue> Visit>
    void forEach(Visit&& visit) const;

    /// What `read` makes of each element in turn. Errors thrown inside name the path from here.
    template <std::invocable<JsonValue> Read>
    [[nodiscard]] auto map(Read&& read) const;

    /// Walks the elements in order.
    class Iterator {
    public:
        [[nodiscard]] JsonValue operator*() const noexcept;
        Iterator& operator++() noexcept;
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        friend class JsonArray;
        explicit Iterator(const JsonHandle& handle) noexcept : handle_{handle} {}
        JsonHandle handle_;
    };
    [[nodiscard]] Iterator begin() const noexcept;
    [[nodiscard]] Iterator end() const noexcept;

private:
    friend struct JsonAccess;
    explicit JsonArray(const JsonHandle& handle) noexcept : handle_{handle} {}
    JsonHandle handle_;
};

/// A parsed JSON text (RFC 8259, UTF-8, an optional byte-order mark, at most 512 containers deep). Any number of them
/// may live at a time, on any threads; each with its values on one thread at a time, as looking for members notes where
/// they are. One takes up to 16 times its text's length; each thread keeps one parser for the next document, with its
/// buffers while they are within 16 MiB.
class TARNWICK_API_EXPORT JsonDocument {
public:
    /// Parses `text` and throws `DecodingError` (`dataCorrupted`, empty path) when it is no JSON. The text is not
    /// needed afterwards. It is read in place when its capacity leaves `padding` bytes behind its end, else copied.
    explicit JsonDocument(const Bytes& text) : JsonDocument{text, Content::ordinary} {}

    /// Of a secret text nothing stays in the parser's memory once the document is gone.
    enum class Content { ordinary, secret };
    JsonDocument(const Bytes& text, Content content);
    ~JsonDocument() = default;
    JsonDocument(const JsonDocument&) = delete;
    JsonDocument& operator=(const JsonDocument&) = delete;

    [[nodiscard]] JsonValue root() const noexcept { return JsonValue{root_}; }

    /// Spare bytes that let a text be parsed without a copy.
    static constexpr std::size_t padding = 64;

private:
    class TARNWICK_API_NO_EXPORT Parser;
    struct GiveBack {
        void operator()(Parser* parser) const noexcept;
    };
    using Lease = std::unique_ptr<Parser, GiveBack>;
    static Lease leaseParser();

    Lease parser_;
    JsonHandle root_{};
};

namespace Detail {

/// Converts to what a call returns: a container's new element is then made where it stays.
template <typename Call>
struct ResultOf {
    const Call& call;
    operator std::invoke_result_t<const Call&>() const { return call(); }
};

}  // namespace Detail

template <std::invocable<JsonObject> Read>
auto JsonObject::nested(std::string_view key, Read&& read) const {
    const auto object = require<JsonObject>(key);
    try {
        return read(object);
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

template <std::invocable<JsonObject> Read>
auto JsonObject::nestedIfPresent(std::string_view key, Read&& read) const {
    using Result = std::optional<std::invoke_result_t<Read, JsonObject>>;
    const auto object = ifPresent<JsonObject>(key);
    try {
        return object ? Result{read(*object)} : Result{};
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

template <std::invocable<JsonValue> Read>
auto JsonObject::nestedArray(std::string_view key, Read&& read) const {
    const auto array = require<JsonArray>(key);
    try {
        return array.map(read);
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

template <std::invocable<JsonValue> Visit>
void JsonArray::forEach(Visit&& visit) const {
    std::size_t index = 0;
    try {
        for (const JsonValue element : *this) {
            visit(element);
            ++index;
        }
    } catch (const DecodingError& error) {
        throw error.within(index);
    }
}

template <std::invocable<JsonValue> Read>
auto JsonArray::map(Read&& read) const {
    std::vector<std::invoke_result_t<Read, JsonValue>> results;
    // No more ahead than is soon read: each may be of the wrong type, and takes far more than it does as text.
    constexpr std::size_t greatestFirstRoom = 256;
    // In parentheses a name is no call of a macro, which some platforms' headers have for this one and for `require`.
    results.reserve((std::min)(size(), greatestFirstRoom));
    forEach([&](const JsonValue element) {
        const auto result = [&] { return read(element); };
        results.emplace_back(Detail::ResultOf<decltype(result)>{result});
    });
    return results;
}

}  // namespace Tarnwick_API::Platform
