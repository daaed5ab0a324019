#pragma once

#include <atomic>
#include <thread>

namespace Tarnwick_API::Platform {

/// The thread that runs a main queue: the last one that did, and before any has the process's first thread, which most
/// programs run it on.
class QueueThread {
public:
    /// The calling thread runs the queue.
    void note() noexcept { thread_ = std::this_thread::get_id(); }

    [[nodiscard]] bool isCurrent() const noexcept;

private:
    std::atomic<std::thread::id> thread_ = std::thread::id{};
};

}  // namespace Tarnwick_API::Platform
