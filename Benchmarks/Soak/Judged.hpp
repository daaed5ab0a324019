#pragma once

#include <Tarnwick_API/Calls/Completion.hpp>

#include "Ending.hpp"

#include <optional>
#include <utility>

namespace Benchmarks {

/// A completion that tells `onEnd` what the operation came to: a value is right when `isRight` says so.
template <typename T, typename IsRight, typename OnEnd>
Tarnwick_API::Completion<T> judged(OnEnd onEnd, IsRight isRight) {
    return [onEnd = std::move(onEnd), isRight = std::move(isRight)](std::optional<T> result,
                                                                    std::optional<Tarnwick_API::ApiError> error) {
        const bool hasBoth = result && error;
        if (!result || hasBoth) {
            onEnd(hasBoth ? Ending::wrong : endingOf(error));
        } else {
            onEnd(isRight(*result) ? Ending::value : Ending::wrong);
        }
    };
}

}  // namespace Benchmarks
