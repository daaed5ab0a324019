#pragma once

#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include "Ending.hpp"
#include "FaultOrders.hpp"
#include "OperationMix.hpp"
#include "ResourceUse.hpp"
#include "ServiceAccess.hpp"
#include "SoakOptions.hpp"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace Benchmarks {

/// Keeps so many operations under way until enough have begun, and counts how each has ended, and how often.
class Load {
public:
    Load(const ServiceAccess& service, const SoakOptions& options);

    /// What is ordered of the service meanwhile; none by default. It outlives the load.
    void setFaults(FaultOrders* faults) noexcept { faults_ = faults; }
    /// Called for each end, for who wants to leave in the middle.
    void setOnEnd(std::function<void()> onEnd) { onEnd_ = std::move(onEnd); }

    /// Runs the main queue on this thread until all has ended, or nothing has for a minute. False when the reader can't
    /// sign in.
    [[nodiscard]] bool run();
    /// Runs it for this long, and leaves everything as it is then.
    void runFor(std::chrono::microseconds time);

    using Endings = std::array<std::size_t, endingCount>;

    struct Count {
        std::size_t begun = 0;
        /// Completions that were never called, and calls beyond the first.
        std::size_t missing = 0;
        std::size_t repeated = 0;
        std::size_t failedAttempts = 0;
        Endings endings{};
        /// The same by kind of operation.
        std::vector<Endings> byKind;
        std::chrono::duration<double> time{0};
    };
    [[nodiscard]] Count count() const;
    [[nodiscard]] const ResourceTrend& resources() const noexcept { return resources_; }
    [[nodiscard]] std::vector<std::string> kinds() const { return mix_.kinds(); }

private:
    void run(std::chrono::microseconds time);
    void begin();
    void fill();
    void end(std::size_t number, Ending ending);
    void sampleEvery(std::chrono::milliseconds pause);
    [[nodiscard]] bool isDone() const;
    [[nodiscard]] bool isEnough() const;

    using Clock = std::chrono::steady_clock;

    SoakOptions options_;
    FaultOrders* faults_ = nullptr;
    std::function<void()> onEnd_;
    std::shared_ptr<Tarnwick_API::Platform::BuiltInMainQueue> queue_ =
        std::make_shared<Tarnwick_API::Platform::BuiltInMainQueue>();
    ResourceTrend resources_;
    /// By the numbers of operations: how often each has ended, and its kind. As large as it gets from the start on, so
    /// that the load's own memory doesn't grow.
    std::vector<std::uint8_t> ends_;
    std::vector<std::uint8_t> kindOf_;
    Count count_;
    std::size_t ended_ = 0;
    Clock::time_point began_ = Clock::now();
    Clock::time_point lastEnd_ = Clock::now();
    // Last, so that what still ends with the session finds the others.
    OperationMix mix_;
};

}  // namespace Benchmarks
