#pragma once

#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Operations/OperationFuture.hpp>
#include <Tarnwick_API/Operations/Outcome.hpp>
#include <Tarnwick_API/Operations/RunningOperation.hpp>
#include <Tarnwick_API/Operations/StoppableScope.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/MoveOnlyFunction.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <chrono>
#include <coroutine>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// An operation that has not begun: it begins when somebody says how to wait for it, and only once; the second time
/// throws std::logic_error, where it would begin.
///
///     api->getStatus().within(5s).start([](std::optional<Status> status, std::optional<ApiError> error) { ... });
///     api->getStatus().then([](Outcome<Status> outcome) { ... });
///     const Outcome<Status> outcome = api->getStatus().stoppedBy(token).future().get();  // on another thread
///     const Outcome<Status> outcome = co_await api->getStatus();
///
/// However it is waited for, it ends exactly once, on the main queue, also where a completion would not be called at
/// all: then without a value. It may be made on any thread; `start`, `then` and `co_await` belong to the main thread.
template <typename T>
class [[nodiscard]] Operation {
public:
    /// What begins the operation, with a completion that ends it.
    using Start = Platform::MoveOnlyFunction<void(Completion<T>)>;
    /// Whom to tell.
    using OnOutcome = Platform::MoveOnlyFunction<void(Outcome<T>)>;

    explicit Operation(Start start) : start_{std::move(start)} {}

    /// Ends with `CancellationError` once `token`, or another one given before, stops: the transfer and the pauses
    /// between attempts end at once; what the service made of a request is then unknown. One that has stopped before
    /// keeps the operation from beginning. An operation that changes the facade's state does to it what its failure
    /// does.
    [[nodiscard]] Operation&& stoppedBy(Platform::StopToken token) && {
        tokens_.push_back(std::move(token));
        return std::move(*this);
    }

    /// As `stoppedBy` once `time` has passed since the operation began; all attempts and pauses count. Of several times
    /// the last one counts. The main queue keeps a small task until then, also when the operation ends before.
    [[nodiscard]] Operation&& within(std::chrono::nanoseconds time) && {
        time_ = time;
        return std::move(*this);
    }

    /// Begins; `onOutcome` is told once, in one value, in which "neither" can't be overlooked.
    void then(OnOutcome onOutcome) && {
        if (!start_) {
            throw std::logic_error{"An operation begins only once."};
        }
        using Running = Detail::RunningOperation<T>;
        const auto queue = Platform::MainQueue::main();
        const auto running = std::make_shared<Running>(std::move(onOutcome), queue);
        const auto token = running->stoppedByAnyOf(tokens_, time_);
        if (const auto reason = token.reason()) {
            Running::endSoon(running, Failure{CancellationError{*reason}});
            return;
        }
        const StoppableScope scope{token};
        std::exchange(start_, {})(typename Running::Answer{running});
        // A backend that does not heed the token leaves that to this.
        if (!scope.isTaken()) {
            Running::endOnStop(running, token);
        }
    }

    /// Begins; `onCompletion` is told as by the facade's own operations.
    void start(Completion<T> onCompletion) && {
        std::move(*this).then([onCompletion = std::move(onCompletion)](Outcome<T> outcome) {
            if (!onCompletion) {
                return;
            }
            auto error = outcome ? std::nullopt : outcome.failure().error();
            if constexpr (std::is_void_v<T>) {
                onCompletion(std::move(error));
            } else {
                onCompletion(outcome ? std::optional<T>{std::move(outcome).value()} : std::nullopt, std::move(error));
            }
        });
    }

    /// Begins on the main queue, so that this may be called on any thread.
    [[nodiscard]] OperationFuture<T> future() && {
        auto queue = Platform::MainQueue::main();
        auto promise = std::make_shared<std::promise<Outcome<T>>>();
        OperationFuture<T> future{promise->get_future(), queue};
        queue->soon([operation = std::make_shared<Operation>(std::move(*this)), promise] {
            std::move(*operation).then([promise](Outcome<T> outcome) { promise->set_value(std::move(outcome)); });
        });
        return future;
    }

    /// Begins when it is awaited. The coroutine goes on on the main queue.
    [[nodiscard]] auto operator co_await() && { return Awaiter{std::move(*this)}; }

private:
    class Awaiter {
        struct State {
            std::optional<Outcome<T>> outcome;
            std::coroutine_handle<> waiting;
        };

    public:
        explicit Awaiter(Operation operation) : operation_{std::move(operation)} {}
        Awaiter(const Awaiter&) = delete;
        Awaiter& operator=(const Awaiter&) = delete;
        /// A coroutine that is destroyed while it waits is not woken.
        ~Awaiter() { state_->waiting = nullptr; }

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        bool await_suspend(std::coroutine_handle<> coroutine) {
            std::move(operation_).then([state = state_](Outcome<T> outcome) {
                state->outcome.emplace(std::move(outcome));
                if (state->waiting) {
                    state->waiting.resume();
                }
            });
            // It may have ended at once; then the coroutine just goes on.
            state_->waiting = state_->outcome ? nullptr : coroutine;
            return !state_->outcome;
        }
        Outcome<T> await_resume() { return std::move(*state_->outcome); }

    private:
        Operation operation_;
        std::shared_ptr<State> state_ = std::make_shared<State>();
    };

    Start start_;
    std::vector<Platform::StopToken> tokens_;
    std::optional<std::chrono::nanoseconds> time_;
};

}  // namespace Tarnwick_API
