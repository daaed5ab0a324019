#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Operations/Outcome.hpp>
#include <Tarnwick_API/Operations/StoppableScope.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/MoveOnlyFunction.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <chrono>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarnwick_API::Detail {

/// Hands on one outcome, once, on the main queue's thread.
template <typename T>
class RunningOperation {
public:
    using OnOutcome = Platform::MoveOnlyFunction<void(Outcome<T>)>;

    RunningOperation(OnOutcome onOutcome, const std::shared_ptr<Platform::MainQueue>& queue)
        : onOutcome_{std::move(onOutcome)}, queue_{queue} {}

    void end(Outcome<T> outcome) {
        // What the application starts in its answer is not to be stopped with this.
        const StoppableScope unstoppable{Platform::StopToken{}};
        ownersOfStop_.clear();
        if (const auto onOutcome = std::exchange(onOutcome_, {})) {
            onOutcome(std::move(outcome));
        }
    }

    /// Ends `running` later, on the queue.
    static void endSoon(const std::shared_ptr<RunningOperation>& running, Failure failure) {
        if (const auto queue = running->queue_.lock()) {
            queue->soon([running, failure = std::move(failure)] { running->end(Outcome<T>{failure}); });
        }
    }

    /// Has `token` end `running` with an error, from whatever thread.
    static void endOnStop(const std::shared_ptr<RunningOperation>& running, const Platform::StopToken& token) {
        running->ownersOfStop_.push_back(
            token.onStop([weak = std::weak_ptr{running}, weakQueue = running->queue_](Platform::StopReason reason) {
                if (const auto queue = weakQueue.lock()) {
                    queue->soon([weak, reason] {
                        if (const auto stopped = weak.lock()) {
                            stopped->end(Outcome<T>{Failure{CancellationError{reason}}});
                        }
                    });
                }
            }));
    }

    /// One token that stops as soon as one of `tokens` does, and once `time` has passed.
    [[nodiscard]] Platform::StopToken stoppedByAnyOf(const std::vector<Platform::StopToken>& tokens,
                                                     std::optional<std::chrono::nanoseconds> time) {
        if (!time && tokens.size() <= 1) {
            return tokens.empty() ? Platform::StopToken{} : tokens.front();
        }
        const Platform::StopSource any;
        for (const auto& token : tokens) {
            ownersOfStop_.push_back(token.onStop([any](Platform::StopReason reason) { any.stop(reason); }));
        }
        const auto queue = queue_.lock();
        if (time && queue) {
            queue->after(*time, [any] { any.stop(Platform::StopReason::deadlinePassed); });
        }
        return any.token();
    }

    /// The completion that ends an operation, also when it is dropped without having been called.
    class Answer {
    public:
        explicit Answer(std::shared_ptr<RunningOperation> running) noexcept : running_{std::move(running)} {}
        Answer(Answer&&) noexcept = default;
        Answer& operator=(Answer&&) = delete;
        Answer(const Answer&) = delete;
        Answer& operator=(const Answer&) = delete;
        ~Answer() {
            if (running_) {
                endSoon(running_, Failure{std::nullopt});
            }
        }

        template <typename Value>
        void operator()(std::optional<Value> value, std::optional<ApiError> error) {
            auto outcome = value ? Outcome<T>{std::move(*value)} : Outcome<T>{Failure{std::move(error)}};
            std::exchange(running_, nullptr)->end(std::move(outcome));
        }
        void operator()(std::optional<ApiError> error) requires std::is_void_v<T> {
            auto outcome = error ? Outcome<T>{Failure{std::move(error)}} : Outcome<T>{std::monostate{}};
            std::exchange(running_, nullptr)->end(std::move(outcome));
        }

    private:
        std::shared_ptr<RunningOperation> running_;
    };

private:
    OnOutcome onOutcome_;
    // Not kept alive: the queue's own tasks hold this.
    std::weak_ptr<Platform::MainQueue> queue_;
    std::vector<Platform::StopToken::Registration> ownersOfStop_;
};

}  // namespace Tarnwick_API::Detail
