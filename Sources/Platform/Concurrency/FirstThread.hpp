#pragma once

namespace Tarnwick_API::Platform {

/// Whether the calling thread is the one that the process began with.
[[nodiscard]] bool isFirstThread() noexcept;

}  // namespace Tarnwick_API::Platform
