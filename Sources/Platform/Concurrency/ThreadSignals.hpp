#pragma once

namespace Tarnwick_API::Platform {

/// Keeps signals from the calling thread: they are for the host's threads. That goes for SIGPIPE most of all, which a
/// write to a closed connection may raise and which would end the process.
void blockSignals() noexcept;

}  // namespace Tarnwick_API::Platform
