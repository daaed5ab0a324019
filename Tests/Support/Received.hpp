#pragma once

#include <Tarnwick_API/Calls/Completion.hpp>

#include <optional>
#include <utility>

namespace Testing {

/// What a completion received.
template <typename T>
struct Received {
    int times = 0;
    std::optional<T> result;
    std::optional<Tarnwick_API::ApiError> error;

    void take(std::optional<T> theResult, std::optional<Tarnwick_API::ApiError> theError) {
        ++times;
        result = std::move(theResult);
        error = std::move(theError);
    }

    [[nodiscard]] Tarnwick_API::Completion<T> completion() {
        return [this](auto... outcome) { take(std::move(outcome)...); };
    }
};

template <>
struct Received<void> {
    int times = 0;
    std::optional<Tarnwick_API::ApiError> error;

    void take(std::optional<Tarnwick_API::ApiError> theError) {
        ++times;
        error = std::move(theError);
    }

    [[nodiscard]] Tarnwick_API::Completion<void> completion() {
        return [this](auto... outcome) { take(std::move(outcome)...); };
    }
};

}  // namespace Testing
