#pragma once

#include <cstdint>

namespace Tarnwick_API {

/// A server's load.
struct ServerStatistics {
    std::int64_t currentUsers = 0;
    std::int64_t maxUsers = 0;
};

}  // namespace Tarnwick_API
