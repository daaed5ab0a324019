#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <coroutine>
#include <exception>

namespace Tarnwick_API {

/// What a coroutine returns that nobody waits for: it begins at its call, like a function, and goes on on the main
/// queue after each `co_await` of an `Operation`. An exception that it lets out is thrown from the main queue instead,
/// in a task of its own.
struct DetachedCoroutine {
    struct promise_type {
        [[nodiscard]] DetachedCoroutine get_return_object() const noexcept { return {}; }
        [[nodiscard]] std::suspend_never initial_suspend() const noexcept { return {}; }
        [[nodiscard]] std::suspend_never final_suspend() const noexcept { return {}; }
        void return_void() const noexcept {}
        void unhandled_exception() const {
            Platform::MainQueue::main()->soon([thrown = std::current_exception()] { std::rethrow_exception(thrown); });
        }
    };
};

}  // namespace Tarnwick_API
