#pragma once

#include <string>

namespace Tarnwick_API::Platform {

/// The name of the running program.
[[nodiscard]] std::string programName();

/// What the application's own folders are called: the main bundle's identifier or the program's name.
[[nodiscard]] std::string applicationFolderName();

}  // namespace Tarnwick_API::Platform
