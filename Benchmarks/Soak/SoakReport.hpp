#pragma once

#include "ExitTrials.hpp"
#include "FaultOrders.hpp"
#include "Load.hpp"
#include "SoakOptions.hpp"

#include <array>

namespace Benchmarks {

/// Print what was measured and whether that is as it must be; false when something is not.
/// @{
[[nodiscard]] bool report(const Load& load, const FaultOrders::Met& faults, const SoakOptions& options);
[[nodiscard]] bool report(const std::array<ExitCount, exitWays.size()>& exits);
/// @}

}  // namespace Benchmarks
