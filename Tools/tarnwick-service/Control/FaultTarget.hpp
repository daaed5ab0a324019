#pragma once

#include "Control/Faults.hpp"

namespace TarnwickService {

/// Refuses a fault whose path and method no request of the service's operations can have. Throws `Refusal`.
void requireTarget(const Fault& fault);

}  // namespace TarnwickService
