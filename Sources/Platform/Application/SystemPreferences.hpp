#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The text that the system keeps under `key` among the user's preferences for this application. None when it is
/// missing or of another type, and where the system keeps no such thing.
[[nodiscard]] std::optional<std::string> systemPreference(std::string_view key);

}  // namespace Tarnwick_API::Platform
