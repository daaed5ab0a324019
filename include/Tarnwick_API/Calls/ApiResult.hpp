#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Platform/Concurrency/MoveOnlyFunction.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstdint>
#include <optional>

namespace Tarnwick_API {

/// How one request ended.
struct ApiResult {
    /// The HTTP status; 0 when there was no HTTP answer.
    std::int64_t status = 0;
    /// None on success.
    std::optional<ApiError> error;
};

/// Takes the body of a successful answer, if any, and how the request ended.
using RequestCompletion = Platform::MoveOnlyFunction<void(std::optional<Platform::Bytes> body, ApiResult result)>;

}  // namespace Tarnwick_API
