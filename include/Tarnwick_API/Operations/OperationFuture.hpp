#pragma once

#include <Tarnwick_API/Operations/Outcome.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <utility>

namespace Tarnwick_API {

/// A `std::future` of an outcome that refuses the wait which would never end: on the main queue's own thread, before
/// the outcome is there. Which thread that is the queue must know (`Platform::MainQueue::isOwnThread`). Thread: any,
/// one at a time.
template <typename T>
class [[nodiscard]] OperationFuture {
public:
    OperationFuture(std::future<Outcome<T>> future, std::shared_ptr<Platform::MainQueue> queue)
        : future_{std::move(future)}, queue_{std::move(queue)} {}

    [[nodiscard]] bool isReady() const {
        return future_.wait_for(std::chrono::seconds{0}) == std::future_status::ready;
    }

    /// Waits. Once only. Throws std::logic_error on the main queue's own thread.
    Outcome<T> get() {
        refuseToWaitForOneself();
        return future_.get();
    }

    /// Waits at most for `time`. Throws std::logic_error on the main queue's own thread.
    [[nodiscard]] std::future_status waitFor(std::chrono::nanoseconds time) const {
        refuseToWaitForOneself();
        return future_.wait_for(time);
    }

    /// The bare future, which refuses nothing.
    [[nodiscard]] std::future<Outcome<T>> unguarded() && { return std::move(future_); }

private:
    void refuseToWaitForOneself() const {
        if (!isReady() && queue_->isOwnThread()) {
            throw std::logic_error{"The main queue's thread can't wait for what comes on the main queue."};
        }
    }

    std::future<Outcome<T>> future_;
    std::shared_ptr<Platform::MainQueue> queue_;
};

}  // namespace Tarnwick_API
