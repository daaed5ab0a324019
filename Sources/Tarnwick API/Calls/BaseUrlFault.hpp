#pragma once

#include <optional>
#include <string>

namespace Tarnwick_API {

/// What is wrong with a base URL, which is "https://", a host with or without a port, and "/vb"; none when nothing is.
[[nodiscard]] std::optional<std::string> baseUrlFault(const std::string& baseUrl);

}  // namespace Tarnwick_API
