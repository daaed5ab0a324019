#pragma once

#include <cstddef>

namespace Benchmarks {

/// How often this program has asked for memory with `new`.
[[nodiscard]] std::size_t allocationCount() noexcept;

}  // namespace Benchmarks
