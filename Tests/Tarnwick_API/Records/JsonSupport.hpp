#pragma once

#include <Tarnwick_API/Platform/Json/DecodingError.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/JsonDecodeError.hpp>

#include <string>
#include <string_view>

namespace Tarnwick_API {

/// `json` with the first `from` in it replaced.
inline std::string with(std::string json, std::string_view from, std::string_view to) {
    return json.replace(json.find(from), from.size(), to);
}

/// How decoding ends: "ok", the text of a `JsonDecodeError`, or kind and path of a `DecodingError`.
template <Platform::Decodable Record>
std::string outcomeOf(const std::string& json, const Platform::JsonDecoder& decoder = {}) {
    try {
        (void)decoder.decode<Record>(json);
        return "ok";
    } catch (const JsonDecodeError& error) {
        return std::string{error.localizedDescription()};
    } catch (const Platform::DecodingError& error) {
        constexpr std::string_view kinds[] = {"no key", "no value", "mismatch", "corrupted"};
        const std::string path = error.pathText();
        return std::string{kinds[static_cast<std::size_t>(error.kind())]} + (path.empty() ? "" : " " + path);
    }
}

template <Platform::Decodable Record>
Record decoded(const std::string& json, const Platform::JsonDecoder& decoder = {}) {
    return decoder.decode<Record>(json);
}

}  // namespace Tarnwick_API
