#pragma once

#include "Service.hpp"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Tarnwick_API::Testing {

/// What a request that meets a fault comes to; `faults.md` says how it is written.
struct Effect {
    enum class Kind { absent, fails, passes, answers, redirects };
    Kind kind = Kind::absent;
    /// Of `HttpError`, or the answer's body.
    std::string text{};
    unsigned status = 0;
    std::size_t requests = 1;
    bool isResent = false;
    bool isDone = false;
};

/// One line of the matrix.
struct FaultRow {
    std::string what;
    std::string meets;
    TarnwickService::Fault fault{};
    Effect http1{};
    Effect http2{};

    /// Whether it ends by the session's idle time-out, which is real time.
    [[nodiscard]] bool isStall() const { return http1.text == "timedOut"; }
};

/// The lines by their kinds, which are names of tests, the statuses among them.
[[nodiscard]] const std::map<std::string, std::vector<FaultRow>>& faultRows();

}  // namespace Tarnwick_API::Testing
