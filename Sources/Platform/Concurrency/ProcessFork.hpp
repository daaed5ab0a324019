#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace Tarnwick_API::Platform {

/// How many forks lie between the program's start and this process. Thread: any, in a child of `fork` too.
[[nodiscard]] unsigned forkGeneration() noexcept;

/// Threads of one kind, which a child of `fork` does not have: it must neither wait for them nor touch what they may
/// have been at. Constant-initialised, as a child can't wait for an initialisation that a thread of its parent had
/// begun either. Thread: any.
class ForkLosses {
public:
    constexpr ForkLosses() noexcept = default;

    /// To call before the first step of starting such a thread.
    void noteStart() noexcept { startedIn_ = forkGeneration() + 1; }

    /// Whether they stay behind in a parent. For good: a child whose parent never started one may start its own.
    [[nodiscard]] bool isLost() const noexcept {
        const unsigned started = startedIn_;
        return started != 0 && started != forkGeneration() + 1;
    }

private:
    /// One more than the generation; 0 before the first start.
    std::atomic<unsigned> startedIn_ = 0;
};

/// Makes `fork` wait for a mutex while this lives, so that a child finds it free and what it guards whole, whichever
/// thread had it; and has nobody wait for `changed` in a child, where who waited is missing. Only for a mutex whose
/// holder neither forks nor makes one of these.
class HeldOverFork {
public:
    /// `fork` takes the outer mutexes first, as their holders do: these may take inner ones, whose holders take none.
    enum class Order { outer, inner };

    /// Throws std::bad_alloc.
    HeldOverFork(std::mutex& mutex, Order order, std::condition_variable* changed = nullptr);
    HeldOverFork(const HeldOverFork&) = delete;
    HeldOverFork& operator=(const HeldOverFork&) = delete;
    ~HeldOverFork();

    [[nodiscard]] Order order() const noexcept { return order_; }
    void hold() { mutex_.lock(); }
    void release() { mutex_.unlock(); }
    void releaseInChild();

private:
    std::mutex& mutex_;
    Order order_;
    std::condition_variable* changed_;
};

}  // namespace Tarnwick_API::Platform
