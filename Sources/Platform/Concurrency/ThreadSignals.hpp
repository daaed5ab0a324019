#pragma once

#include <functional>
#include <thread>

namespace Tarnwick_API::Platform {

/// A thread that runs `body` and takes no signal, not even before `body` begins: they are for the host's threads. That
/// goes for SIGPIPE most of all, which a write to a closed connection may raise and which would end the process (on
/// macOS it comes to the process and not to the thread that writes; there the sockets raise none). The threads that it
/// starts take none either. Throws std::system_error or std::bad_alloc when there is none to have.
[[nodiscard]] std::thread threadWithoutSignals(std::function<void()> body);

}  // namespace Tarnwick_API::Platform
