#pragma once

#include <filesystem>
#include <string>

namespace Tarnwick_API::Platform {

/// The XDG base directory that the environment variable `variable` names, or else `underHome` in the user's home. A
/// relative path in the variable counts as none. Empty when the user has no home.
[[nodiscard]] std::filesystem::path userFolder(const char* variable, const std::filesystem::path& underHome);

/// The application's own folder within such a directory: the main bundle's identifier or the program's name.
[[nodiscard]] std::string applicationFolderName();

}  // namespace Tarnwick_API::Platform
