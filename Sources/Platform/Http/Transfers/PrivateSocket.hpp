#pragma once

namespace Tarnwick_API::Platform {

/// `socket`, but that no program which the host executes inherits the descriptor.
[[nodiscard]] int openPrivateSocket(int family, int type, int protocol) noexcept;

}  // namespace Tarnwick_API::Platform
