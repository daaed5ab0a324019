#pragma once

#include <Tarnwick_API/Calls/Completion.hpp>

#include <optional>
#include <utility>

namespace Tarnwick_API::Testing {

/// What a completion received.
template <typename T>
struct Received {
    int times = 0;
    std::optional<T> result;
    std::optional<ApiError> error;

    void take(std::optional<T> theResult, std::optional<ApiError> theError) {
        ++times;
        result = std::move(theResult);
        error = std::move(theError);
    }

    [[nodiscard]] Completion<T> completion() {
        return [this](auto... outcome) { take(std::move(outcome)...); };
    }
};

template <>
struct Received<void> {
    int times = 0;
    std::optional<ApiError> error;

    void take(std::optional<ApiError> theError) {
        ++times;
        error = std::move(theError);
    }

    [[nodiscard]] Completion<void> completion() {
        return [this](auto... outcome) { take(std::move(outcome)...); };
    }
};

}  // namespace Tarnwick_API::Testing
