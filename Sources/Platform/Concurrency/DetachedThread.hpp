#pragma once

#include <functional>

namespace Tarnwick_API::Platform {

/// Runs `body`, which throws nothing and owns what it uses, on a thread of its own that nobody waits for. Signals are
/// left to the host's threads. False when the system has no thread to give.
[[nodiscard]] bool startDetachedThread(std::function<void()> body);

}  // namespace Tarnwick_API::Platform
