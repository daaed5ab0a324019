#pragma once

#include <atomic>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The writing end of the debug channel, for this project's own code.
class DebugChannel {
public:
    /// Ask before building a message. With no logger installed this is one load and one branch.
    [[nodiscard]] static bool isOpen() noexcept {
        return hasLogger_.load(std::memory_order_relaxed) && loggerTakesDebug();
    }

    /// Writes `message` as it stands. `function` is the operation's name, a literal: inside a lambda the compiler's
    /// own name for the place would say nothing. `file` and `line` are the caller's.
    // Not std::source_location: clang 14 lacks it with this standard library.
    static void write(std::string_view message, const char* function, const char* file = __builtin_FILE(),
                      int line = __builtin_LINE());

private:
    friend class Logging;
    static bool loggerTakesDebug() noexcept;
    static inline std::atomic<bool> hasLogger_{false};
};

}  // namespace Tarnwick_API::Platform
