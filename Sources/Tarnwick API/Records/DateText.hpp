#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

// Dates of the Gregorian calendar in UTC, whatever the user's locale and time zone. Blanks may stand before each number
// and at the end; numbers may be short ("2019-3-1 7:5:0"); a date that doesn't exist gives none.
//
// The service's two kinds of dates differ on purpose: a device's date has an hour of the 12-hour clock without a
// marker.

/// "2019-03-01 17:05:00", hours 0 to 23.
[[nodiscard]] std::optional<std::chrono::sys_seconds> parse24HourDate(std::string_view text) noexcept;

/// "2019-03-01 09:15:00", hours 0 to 12, where 12 is the hour after midnight.
[[nodiscard]] std::optional<std::chrono::sys_seconds> parse12HourDate(std::string_view text) noexcept;

}  // namespace Tarnwick_API
