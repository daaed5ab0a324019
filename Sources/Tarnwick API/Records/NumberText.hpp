#pragma once

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

// The two with a reference are what lists are read with: an optional number is returned by way of memory, which takes
// as long as reading the text does. They leave the number as it is where there is none.

/// An optional sign and decimal digits, nothing else; none beyond 64 bits.
[[nodiscard]] bool parseInt(std::string_view text, std::int64_t& number) noexcept;
[[nodiscard]] inline std::optional<std::int64_t> parseInt(std::string_view text) noexcept {
    std::int64_t number = 0;
    return parseInt(text, number) ? std::optional{number} : std::nullopt;
}

/// A number in the C locale from end to end: decimal, hexadecimal, "nan" or "inf"; none when it overflows or
/// underflows to nothing.
[[nodiscard]] bool parseDouble(std::string_view text, double& number);
[[nodiscard]] inline std::optional<double> parseDouble(std::string_view text) {
    double number = 0;
    return parseDouble(text, number) ? std::optional{number} : std::nullopt;
}

/// A required text member that must hold an integer. Throws `Platform::DecodingError` when it is no text, and
/// `JsonDecodeError` when the text is no integer.
[[nodiscard]] std::int64_t requireIntText(const Platform::JsonObject& object, std::string_view key);

/// A required text member; none when the text is no number. Throws `Platform::DecodingError` when it is no text.
[[nodiscard]] inline std::optional<double> requireDoubleText(const Platform::JsonObject& object, std::string_view key) {
    return parseDouble(object.require<std::string_view>(key));
}

}  // namespace Tarnwick_API
