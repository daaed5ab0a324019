#pragma once

namespace Tarnwick_API::Platform {

/// Tells, on the standard error stream, of a process that ends by itself without ever having run the built-in main
/// queue, though something was to come on it: none of its completions was called, and nothing else says so.
/// Thread: any. A child of `fork` is silent about what its parent began.
class UnrunMainQueue {
public:
    UnrunMainQueue() = delete;

    /// Something is to come on the built-in queue.
    static void noteUse() noexcept;
    /// Some thread runs a built-in queue.
    static void noteRun() noexcept;
};

}  // namespace Tarnwick_API::Platform
