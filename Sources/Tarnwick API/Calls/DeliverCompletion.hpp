#pragma once

#include <utility>

namespace Tarnwick_API {

/// Calls a completion that the application may have left empty.
template <typename Function, typename... Arguments>
void deliver(const Function& onCompletion, Arguments&&... arguments) {
    if (onCompletion) {
        onCompletion(std::forward<Arguments>(arguments)...);
    }
}

}  // namespace Tarnwick_API
