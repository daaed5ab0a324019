#pragma once

#include "CommandLine/Completion.hpp"

#include <vector>

namespace TarnwickClient {

/// The codes of all countries, each with its name in the user's language; none where the system does not list them. The
/// service has fewer.
[[nodiscard]] std::vector<CommandLine::Candidate> countryCodes();

}  // namespace TarnwickClient
