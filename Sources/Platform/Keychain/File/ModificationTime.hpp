#pragma once

#include <ctime>

#include <sys/stat.h>

namespace Tarnwick_API::Platform {

/// The member has another name on each system.
[[nodiscard]] timespec modificationTime(const struct stat& file) noexcept;

}  // namespace Tarnwick_API::Platform
