#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Calls/CancellationError.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Operations/Outcome.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace Tarnwick_API::Testing::Detail {

/// A completion that is still to be called: once, on the main queue, with an answer or because its token has stopped.
template <typename Result>
class PendingAnswer {
public:
    [[nodiscard]] static std::shared_ptr<PendingAnswer> make(Completion<Result> onCompletion,
                                                             const Platform::StopToken& stop) {
        const auto pending = std::make_shared<PendingAnswer>(std::move(onCompletion));
        // Told on whatever thread stops.
        pending->stop_ = stop.onStop([weak = std::weak_ptr{pending}, weakQueue = pending->queue_](auto reason) {
            if (const auto queue = weakQueue.lock()) {
                queue->soon([weak, reason] {
                    if (const auto stopped = weak.lock()) {
                        stopped->end(Outcome<Result>{Failure{CancellationError{reason}}});
                    }
                });
            }
        });
        return pending;
    }

    explicit PendingAnswer(Completion<Result> onCompletion) : onCompletion_{std::move(onCompletion)} {}

    [[nodiscard]] bool hasEnded() const noexcept { return hasEnded_; }

    static void endSoon(const std::shared_ptr<PendingAnswer>& pending, Outcome<Result> outcome) {
        if (const auto queue = pending->queue_.lock()) {
            queue->soon([pending, outcome = std::move(outcome)] { pending->end(outcome); });
        }
    }

private:
    void end(Outcome<Result> outcome) {
        if (std::exchange(hasEnded_, true)) {
            return;
        }
        stop_ = {};
        const auto onCompletion = std::exchange(onCompletion_, {});
        if (!onCompletion) {
            return;
        }
        auto error = outcome ? std::nullopt : outcome.failure().error();
        if constexpr (std::is_void_v<Result>) {
            onCompletion(std::move(error));
        } else {
            onCompletion(outcome ? std::optional<Result>{std::move(outcome).value()} : std::nullopt, std::move(error));
        }
    }

    Completion<Result> onCompletion_;
    // Not kept alive: the queue's own tasks hold this.
    std::weak_ptr<Platform::MainQueue> queue_ = Platform::MainQueue::main();
    Platform::StopToken::Registration stop_;
    bool hasEnded_ = false;
};

}  // namespace Tarnwick_API::Testing::Detail
