#pragma once

#include <filesystem>

namespace Tarnwick_API::Platform {

/// The path in an environment variable's value; empty unless it is an absolute one.
[[nodiscard]] std::filesystem::path absolutePathFrom(const char* text);

/// The user's home; empty when there is none.
[[nodiscard]] std::filesystem::path homeFolder();

}  // namespace Tarnwick_API::Platform
