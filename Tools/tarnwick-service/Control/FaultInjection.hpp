#pragma once

#include "Control/Faults.hpp"
#include "Http/Exchange.hpp"

#include <functional>

namespace TarnwickService {

/// The answer to a request that a fault applies to. `serve` gives the service's own; it is called only when the request
/// is to take effect. `faults` ends the fault's delay early when all pauses are cancelled.
Answer injectFault(const Fault& fault, Faults& faults, const std::function<Answer()>& serve);

}  // namespace TarnwickService
