#pragma once

namespace Tarnwick_API {

/// A generation of the service's API.
enum class ApiVersion {
    v1,
    v2,  ///< an early stub: its backend sends nothing and never calls back
};

}  // namespace Tarnwick_API
