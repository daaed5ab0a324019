#pragma once

#include <cstdint>

namespace Tarnwick_API {

/// A server's load, as the service writes it: 0, negative, or more users than places also.
struct ServerStatistics {
    std::int64_t currentUsers = 0;
    std::int64_t maxUsers = 0;
};

}  // namespace Tarnwick_API
