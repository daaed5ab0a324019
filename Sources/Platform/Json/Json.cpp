#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Json/ParsedText.hpp>

#include <bit>
#include <charconv>
#include <cstring>
#include <type_traits>

#include <simdjson.h>

namespace Tarnwick_API::Platform {

namespace dom = simdjson::dom;

/// Knows, as JsonDocument does and nothing else, that a view's handle is the parser's own view.
struct JsonAccess {
    template <typename View>
    static View as(const JsonHandle& handle) noexcept {
        static_assert(sizeof(View) == sizeof(JsonHandle) && std::is_trivially_copyable_v<View>);
        return std::bit_cast<View>(handle);
    }
    static dom::element element(const JsonValue& value) noexcept { return as<dom::element>(value.handle_); }
    static JsonHandle handle(const auto& view) noexcept { return std::bit_cast<JsonHandle>(view); }

    static JsonValue value(const dom::element& element) noexcept { return JsonValue{handle(element)}; }
    static JsonObject object(const dom::object& object) noexcept {
        const auto place = std::bit_cast<JsonPlace>(object);
        ParsedText& parsed = ParsedText::of(place);
        return JsonObject{handle(object), parsed.isSecret ? nullptr : parsed.layouts.take(place)};
    }
    static JsonArray array(const dom::array& array) noexcept { return JsonArray{handle(array)}; }
};

namespace {

constexpr double twoToThe63 = 9223372036854775808.0;

template <typename T>
std::optional<T> read(const dom::element& element) noexcept {
    if constexpr (std::is_same_v<T, JsonObject>) {
        dom::object object;
        return element.get(object) == simdjson::SUCCESS ? std::optional{JsonAccess::object(object)} : std::nullopt;
    } else if constexpr (std::is_same_v<T, JsonArray>) {
        dom::array array;
        return element.get(array) == simdjson::SUCCESS ? std::optional{JsonAccess::array(array)} : std::nullopt;
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        std::int64_t integer = 0;
        if (element.get(integer) == simdjson::SUCCESS) {
            return integer;
        }
        // The least integer as a real is not told from a longer one, rounded; so it counts as too long.
        double real = 0;
        if (element.type() == dom::element_type::DOUBLE && element.get(real) == simdjson::SUCCESS &&
            real > -twoToThe63 && real < twoToThe63 && real == static_cast<double>(static_cast<std::int64_t>(real))) {
            return static_cast<std::int64_t>(real);
        }
        return std::nullopt;
    } else {
        T scalar{};
        if (element.get(scalar) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        return scalar;
    }
}

/// As the library's own look-up by key, but compares the first byte before the rest: most names differ there.
[[gnu::noinline]] std::optional<dom::element> searchedMember(const dom::object& object, std::string_view key) noexcept {
    const auto end = object.end();
    for (auto field = object.begin(); field != end; ++field) {
        if (field.key_length() != key.size()) {
            continue;
        }
        const char* name = field.key_c_str();
        if (key.empty() || (name[0] == key[0] && std::memcmp(name, key.data(), key.size()) == 0)) {
            return field.value();
        }
    }
    return std::nullopt;
}

/// Where the member's value is; at 0, where none is, when it is missing.
inline JsonPlace member(const JsonHandle& object, JsonMemberLayout* layout, std::string_view key) noexcept {
    const auto whole = JsonAccess::as<JsonPlace>(object);
    if (layout != nullptr) {
        return {whole.doc, layout->find(whole, key)};
    }
    const auto found = searchedMember(JsonAccess::as<dom::object>(object), key);
    return found ? std::bit_cast<JsonPlace>(*found) : JsonPlace{whole.doc, 0};
}

inline bool isMissing(const JsonPlace& member) noexcept {
    return member.json_index == 0;
}

JsonType typeOf(const dom::element& element) noexcept {
    switch (element.type()) {
        case dom::element_type::ARRAY:
            return JsonType::array;
        case dom::element_type::OBJECT:
            return JsonType::object;
        case dom::element_type::INT64:
        case dom::element_type::UINT64:
        case dom::element_type::DOUBLE:
            return JsonType::number;
        case dom::element_type::STRING:
            return JsonType::string;
        case dom::element_type::BOOL:
            return JsonType::boolean;
        case dom::element_type::NULL_VALUE:
            break;
    }
    return JsonType::null;
}

template <typename T>
constexpr std::string_view typeName = "String";
template <>
constexpr std::string_view typeName<bool> = "Bool";
template <>
constexpr std::string_view typeName<std::int64_t> = "Int";
template <>
constexpr std::string_view typeName<double> = "Double";
template <>
constexpr std::string_view typeName<JsonObject> = "Dictionary<String, Any>";
template <>
constexpr std::string_view typeName<JsonArray> = "Array<Any>";

template <typename T>
constexpr std::string_view containerKind = {};
template <>
constexpr std::string_view containerKind<JsonObject> = "keyed";
template <>
constexpr std::string_view containerKind<JsonArray> = "unkeyed";

std::string_view foundPhrase(JsonType type) noexcept {
    switch (type) {
        case JsonType::null:
            return "a null value";
        // The platform's decoder doesn't tell a flag from a number here.
        case JsonType::boolean:
        case JsonType::number:
            return "a number";
        case JsonType::string:
            return "a string/data";
        case JsonType::array:
            return "an array";
        case JsonType::object:
            break;
    }
    return "a dictionary";
}

std::string numberText(const dom::element& element) {
    std::array<char, 32> digits{};
    const auto write = [&](auto number) {
        return std::string{digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
    };
    std::uint64_t integer = 0;
    return element.get(integer) == simdjson::SUCCESS ? write(integer) : write(read<double>(element).value_or(0));
}

template <typename T>
[[noreturn, gnu::cold, gnu::noinline]] void throwUnreadable(dom::element element) {
    using Kind = DecodingError::Kind;
    const JsonType type = typeOf(element);
    const std::string expected{typeName<T>};
    if (type == JsonType::null) {
        const std::string container{containerKind<T>};
        throw DecodingError{Kind::valueNotFound,
                            {},
                            container.empty()
                                ? "Expected " + expected + " value but found null instead."
                                : "Cannot get " + container + " decoding container -- found null value instead."};
    }
    if (std::is_same_v<T, std::int64_t> && type == JsonType::number) {
        throw DecodingError{Kind::dataCorrupted,
                            {},
                            "Parsed JSON number <" + numberText(element) + "> does not fit in " + expected + "."};
    }
    throw DecodingError{
        Kind::typeMismatch,
        {},
        "Expected to decode " + expected + " but found " + std::string{foundPhrase(type)} + " instead."};
}

template <typename T>
[[noreturn, gnu::cold, gnu::noinline]] void throwUnreadable(dom::element element, std::string_view key) {
    try {
        throwUnreadable<T>(element);
    } catch (const DecodingError& error) {
        throw error.within(std::string{key});
    }
}

[[noreturn, gnu::cold, gnu::noinline]] void throwKeyNotFound(std::string_view key) {
    const std::string name{key};
    throw DecodingError{
        DecodingError::Kind::keyNotFound,
        {},
        "No value associated with key CodingKeys(stringValue: \"" + name + "\", intValue: nil) (\"" + name + "\")."};
}

}  // namespace

JsonType JsonValue::type() const noexcept {
    return typeOf(JsonAccess::element(*this));
}
std::optional<bool> JsonValue::boolean() const noexcept {
    return read<bool>(JsonAccess::element(*this));
}
std::optional<std::int64_t> JsonValue::integer() const noexcept {
    return read<std::int64_t>(JsonAccess::element(*this));
}
std::optional<double> JsonValue::number() const noexcept {
    return read<double>(JsonAccess::element(*this));
}
std::optional<std::string_view> JsonValue::string() const noexcept {
    return read<std::string_view>(JsonAccess::element(*this));
}
std::optional<JsonObject> JsonValue::object() const noexcept {
    return read<JsonObject>(JsonAccess::element(*this));
}
std::optional<JsonArray> JsonValue::array() const noexcept {
    return read<JsonArray>(JsonAccess::element(*this));
}

template <JsonReadable T>
T JsonValue::require() const {
    if constexpr (std::is_same_v<T, std::string>) {
        return std::string{require<std::string_view>()};
    } else {
        const dom::element element = JsonAccess::element(*this);
        const auto result = read<T>(element);
        if (!result) {
            throwUnreadable<T>(element);
        }
        return *result;
    }
}

std::optional<JsonValue> JsonObject::find(std::string_view key) const noexcept {
    const auto found = member(handle_, layout_, key);
    return isMissing(found) ? std::nullopt : std::optional{JsonAccess::value(std::bit_cast<dom::element>(found))};
}

template <JsonReadable T>
T JsonObject::require(std::string_view key) const {
    if constexpr (std::is_same_v<T, std::string>) {
        return std::string{require<std::string_view>(key)};
    } else {
        const auto found = member(handle_, layout_, key);
        if (isMissing(found)) {
            throwKeyNotFound(key);
        }
        const auto element = std::bit_cast<dom::element>(found);
        const auto result = read<T>(element);
        if (!result) {
            throwUnreadable<T>(element, key);
        }
        return *result;
    }
}

template <JsonReadable T>
std::optional<T> JsonObject::ifPresent(std::string_view key) const {
    if constexpr (std::is_same_v<T, std::string>) {
        const auto text = ifPresent<std::string_view>(key);
        return text ? std::optional<std::string>{*text} : std::nullopt;
    } else {
        const auto found = member(handle_, layout_, key);
        const auto element = std::bit_cast<dom::element>(found);
        if (isMissing(found) || element.is_null()) {
            return std::nullopt;
        }
        auto result = read<T>(element);
        if (!result) {
            throwUnreadable<T>(element, key);
        }
        return result;
    }
}

template bool JsonValue::require() const;
template std::int64_t JsonValue::require() const;
template double JsonValue::require() const;
template std::string_view JsonValue::require() const;
template std::string JsonValue::require() const;
template JsonObject JsonValue::require() const;
template JsonArray JsonValue::require() const;

template bool JsonObject::require(std::string_view) const;
template std::int64_t JsonObject::require(std::string_view) const;
template double JsonObject::require(std::string_view) const;
template std::string_view JsonObject::require(std::string_view) const;
template std::string JsonObject::require(std::string_view) const;
template JsonObject JsonObject::require(std::string_view) const;
template JsonArray JsonObject::require(std::string_view) const;

template std::optional<bool> JsonObject::ifPresent(std::string_view) const;
template std::optional<std::int64_t> JsonObject::ifPresent(std::string_view) const;
template std::optional<double> JsonObject::ifPresent(std::string_view) const;
template std::optional<std::string_view> JsonObject::ifPresent(std::string_view) const;
template std::optional<std::string> JsonObject::ifPresent(std::string_view) const;
template std::optional<JsonObject> JsonObject::ifPresent(std::string_view) const;
template std::optional<JsonArray> JsonObject::ifPresent(std::string_view) const;

std::size_t JsonArray::size() const noexcept {
    const auto array = JsonAccess::as<dom::array>(handle_);
    // The parser's count stops at this value, and an array may be longer.
    constexpr std::size_t saturated = 0xFFFFFF;
    if (array.size() < saturated) {
        return array.size();
    }
    std::size_t size = 0;
    for (auto element = array.begin(); element != array.end(); ++element) {
        ++size;
    }
    return size;
}

JsonArray::Iterator JsonArray::begin() const noexcept {
    return Iterator{JsonAccess::handle(JsonAccess::as<dom::array>(handle_).begin())};
}

JsonArray::Iterator JsonArray::end() const noexcept {
    return Iterator{JsonAccess::handle(JsonAccess::as<dom::array>(handle_).end())};
}

JsonValue JsonArray::Iterator::operator*() const noexcept {
    return JsonAccess::value(*JsonAccess::as<dom::array::iterator>(handle_));
}

JsonArray::Iterator& JsonArray::Iterator::operator++() noexcept {
    auto iterator = JsonAccess::as<dom::array::iterator>(handle_);
    handle_ = JsonAccess::handle(++iterator);
    return *this;
}

}  // namespace Tarnwick_API::Platform
