#pragma once

#include <functional>

namespace Tarnwick_API::Platform {

/// The steps of the library's calls of the Secret Service that others may come between.
enum class SecretServiceStep { search, create, erase };

/// Has `what` done once, by the thread that comes to it, just before this program's next step of that kind.
void beforeNext(SecretServiceStep step, std::function<void()> what);

}  // namespace Tarnwick_API::Platform
