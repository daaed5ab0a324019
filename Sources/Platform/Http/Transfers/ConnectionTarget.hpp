#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API::Platform {

/// Where a connection for `urlText` really goes: the URL itself, or one that names the place that the first matching
/// rule leads it to. `rules`: as `HttpSessionConfiguration::connectTo`.
[[nodiscard]] std::string connectionTarget(std::string_view urlText, const std::vector<std::string>& rules);

}  // namespace Tarnwick_API::Platform
