#pragma once

namespace Tarnwick_API {

/// Which installation of the service is addressed.
enum class ApiEnvironment { dev, live, beta, staging };

}  // namespace Tarnwick_API
