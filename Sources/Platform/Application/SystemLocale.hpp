#pragma once

#include <string>
#include <vector>

namespace Tarnwick_API::Platform {

/// The identifier of the user's language and region; empty when the system doesn't know them.
[[nodiscard]] std::string systemLocaleIdentifier();

/// The identifiers of the languages that the user has chosen, best first. It need not begin with the locale's.
[[nodiscard]] std::vector<std::string> systemLanguages();

}  // namespace Tarnwick_API::Platform
