#pragma once

#include "Control/Faults.hpp"

#include <string_view>
#include <vector>

namespace TarnwickService {

/// Reads one fault or a list of them from JSON. Throws `Refusal`.
std::vector<Fault> readFaults(std::string_view body);

}  // namespace TarnwickService
