#pragma once

#include "Control/ControlJson.hpp"

namespace TarnwickService {

/// Refuses a fault that has no effect, and one with a member that has none beside the others: whoever ordered it means
/// something else. Throws `Refusal`.
void requireConsistency(const Json& fault);

}  // namespace TarnwickService
