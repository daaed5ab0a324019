#pragma once

#include <cstddef>

namespace Tarnwick_API {

/// How often this program has got memory so far.
[[nodiscard]] std::size_t allocationCount() noexcept;

}  // namespace Tarnwick_API
