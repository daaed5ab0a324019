#pragma once

#include <filesystem>

namespace Tarnwick_API::Platform {

/// Where applications keep what they can't do without: on macOS Application Support in the user's library, elsewhere
/// the XDG base directory, a relative path for which counts as none. Empty when the user has no home.
[[nodiscard]] std::filesystem::path userDataFolder();

/// The same for what they can do without.
[[nodiscard]] std::filesystem::path userCacheFolder();

}  // namespace Tarnwick_API::Platform
