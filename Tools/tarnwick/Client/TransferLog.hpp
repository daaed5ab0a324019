#pragma once

#include <Tarnwick_API/Facade/RequestAttempt.hpp>

#include <cstdint>
#include <string>

namespace TarnwickClient {

/// What has been tried so far, for people who wait and for the words about a failure.
struct TransferLog {
    /// The number of the last attempt that has ended.
    std::int64_t attempt = 0;
    /// What it failed of; empty when it has not failed.
    std::string lastError;
    /// Answers by `HttpAnswer::Source`.
    int fromService = 0;
    int fromCache = 0;
    int confirmed = 0;

    void note(const Tarnwick_API::RequestAttempt& ended);
};

/// Where the answers came from, in words.
[[nodiscard]] std::string sourcesText(const TransferLog& log);

}  // namespace TarnwickClient
