#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Platform/Concurrency/MoveOnlyFunction.hpp>

#include <optional>

namespace Tarnwick_API {

namespace Detail {

template <typename T>
struct CompletionOf {
    using Type = Platform::MoveOnlyFunction<void(std::optional<T> result, std::optional<ApiError> error)>;
};

template <>
struct CompletionOf<void> {
    using Type = Platform::MoveOnlyFunction<void(std::optional<ApiError> error)>;
};

}  // namespace Detail

/// Takes what an operation came to, at most once, on the main queue: a result, or an error, or neither, which means
/// that the service answered but there was no usable data in it. `Completion<void>` takes the error alone. An empty
/// one is allowed: the operation runs and nobody is told. It may own what only moves, and is never copied. What it
/// throws goes out of the main queue's run, or out of the call in which it is called: it has had its one call.
template <typename T>
using Completion = typename Detail::CompletionOf<T>::Type;

}  // namespace Tarnwick_API
