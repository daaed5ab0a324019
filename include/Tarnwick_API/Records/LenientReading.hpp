#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

// The service writes the same member as a number here and as a text there, and flags in three ways. These readers take
// any of them, and give none for a member that is missing, null or unreadable. None of them throws a decoding error.

/// A whole number, or a text of an optional sign and decimal digits; any within 64 bits.
[[nodiscard]] TARNWICK_API_EXPORT std::optional<std::int64_t> decodeInt(const Platform::JsonObject& object,
                                                                        std::string_view key) noexcept;

/// A text; a number is not converted.
[[nodiscard]] TARNWICK_API_EXPORT std::optional<std::string> decodeString(const Platform::JsonObject& object,
                                                                          std::string_view key);

/// A flag; a whole number, true when it is 1; or a text, true when it is "true" or "1".
[[nodiscard]] TARNWICK_API_EXPORT std::optional<bool> decodeBool(const Platform::JsonObject& object,
                                                                 std::string_view key) noexcept;

/// A number, or a text that is one from end to end in the C locale ("nan" and "inf" included).
[[nodiscard]] TARNWICK_API_EXPORT std::optional<double> decodeDouble(const Platform::JsonObject& object,
                                                                     std::string_view key);

/// Seconds, written as `decodeDouble` reads them; not necessarily finite or positive.
[[nodiscard]] TARNWICK_API_EXPORT std::optional<double> decodeTimeInterval(const Platform::JsonObject& object,
                                                                           std::string_view key);

/// A text like "2019-03-01 17:05:00", 24 hours, in UTC.
[[nodiscard]] TARNWICK_API_EXPORT std::optional<std::chrono::sys_seconds> decodeDate(const Platform::JsonObject& object,
                                                                                     std::string_view key) noexcept;

}  // namespace Tarnwick_API
