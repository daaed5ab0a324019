#pragma once

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// An optional sign and decimal digits, nothing else; none beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseInt(std::string_view text) noexcept;

/// A number in the C locale from end to end: decimal, hexadecimal, "nan" or "inf"; none when it overflows or
/// underflows to nothing.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text);

/// A required text member that must hold an integer. Throws `Platform::DecodingError` when it is no text, and
/// `JsonDecodeError` when the text is no integer.
[[nodiscard]] std::int64_t requireIntText(const Platform::JsonObject& object, std::string_view key);

/// A required text member; none when the text is no number. Throws `Platform::DecodingError` when it is no text.
[[nodiscard]] std::optional<double> requireDoubleText(const Platform::JsonObject& object, std::string_view key);

}  // namespace Tarnwick_API
