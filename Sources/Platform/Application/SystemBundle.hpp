#pragma once

#include <Tarnwick_API/Platform/Application/Bundle.hpp>

namespace Tarnwick_API::Platform {

/// What the system itself knows of the application that runs; empty where it keeps no such thing.
[[nodiscard]] Bundle systemBundle();

}  // namespace Tarnwick_API::Platform
