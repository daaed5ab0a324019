#pragma once

namespace Tarnwick_API {

/// The generations of the service's API.
enum class ApiVersion { v1, v2 };

}  // namespace Tarnwick_API
