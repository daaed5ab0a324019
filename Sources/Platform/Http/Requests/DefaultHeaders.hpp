#pragma once

#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API::Platform {

/// "en-GB;q=1.0, de-DE;q=0.9", of the first six of `tags`.
[[nodiscard]] std::string acceptLanguage(const std::vector<std::string>& tags);

/// "EXECUTABLE/VERSION (IDENTIFIER; build:BUILD; SYSTEM) LIBRARY"; an entry that `bundle` lacks reads "Unknown". Of a
/// bundle that has none of them `library` alone is left.
[[nodiscard]] std::string userAgent(const Bundle& bundle, std::string_view system, std::string_view library);

/// The major, minor and patch number that `release` begins with: "6.1.0" of "6.1.0-18-amd64".
[[nodiscard]] std::string threeNumbers(std::string_view release);

}  // namespace Tarnwick_API::Platform
