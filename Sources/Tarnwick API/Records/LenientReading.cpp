#include <Tarnwick_API/Records/LenientReading.hpp>

#include <Records/DateText.hpp>
#include <Records/NumberText.hpp>

namespace Tarnwick_API {

using Platform::JsonObject;

std::optional<std::int64_t> decodeInt(const JsonObject& object, std::string_view key) noexcept {
    const auto member = object.find(key);
    if (!member) {
        return std::nullopt;
    }
    if (const auto text = member->string()) {
        return parseInt(*text);
    }
    return member->integer();
}

std::optional<std::string> decodeString(const JsonObject& object, std::string_view key) {
    const auto member = object.find(key);
    const auto text = member ? member->string() : std::nullopt;
    return text ? std::optional<std::string>{*text} : std::nullopt;
}

std::optional<bool> decodeBool(const JsonObject& object, std::string_view key) noexcept {
    const auto member = object.find(key);
    if (!member) {
        return std::nullopt;
    }
    if (const auto flag = member->boolean()) {
        return flag;
    }
    if (const auto integer = member->integer()) {
        return *integer == 1;
    }
    if (const auto text = member->string()) {
        return *text == "true" || *text == "1";
    }
    return std::nullopt;
}

std::optional<double> decodeDouble(const JsonObject& object, std::string_view key) {
    const auto member = object.find(key);
    if (!member) {
        return std::nullopt;
    }
    if (const auto text = member->string()) {
        return parseDouble(*text);
    }
    return member->number();
}

std::optional<double> decodeTimeInterval(const JsonObject& object, std::string_view key) {
    return decodeDouble(object, key);
}

std::optional<std::chrono::sys_seconds> decodeDate(const JsonObject& object, std::string_view key) noexcept {
    const auto member = object.find(key);
    const auto text = member ? member->string() : std::nullopt;
    return text ? parse24HourDate(*text) : std::nullopt;
}

}  // namespace Tarnwick_API
