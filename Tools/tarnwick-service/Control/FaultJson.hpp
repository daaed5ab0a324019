#pragma once

#include "Control/Faults.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace TarnwickService {

/// Reads one fault or a list of them from JSON. Throws `Refusal` for what is not understood, and for what could never
/// have an effect.
std::vector<Fault> readFaults(std::string_view body);

/// One member of a fault with one kind of value, in words for people.
struct FaultKind {
    std::string name;
    std::string value;
    std::string effect;
};

/// All that `readFaults` knows.
std::vector<FaultKind> faultKinds();

}  // namespace TarnwickService
