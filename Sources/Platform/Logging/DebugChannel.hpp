#pragma once

#include <Platform/Application/ProcessWide.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

/// The writing end of the debug channel, for this project's own code.
class DebugChannel {
public:
    /// Ask before building a message. With no logger installed this is one load and one branch.
    [[nodiscard]] static bool isOpen() noexcept { return ProcessValuesInUse::hasLogger() && loggerTakesDebug(); }

    /// Writes `message` as it stands. `function` is the operation's name, a literal: inside a lambda the compiler's
    /// own name for the place would say nothing. `file` and `line` are the caller's.
    // Not std::source_location: clang 14 lacks it with this standard library.
    static void write(std::string_view message, const char* function, const char* file = __builtin_FILE(),
                      int line = __builtin_LINE());

private:
    static bool loggerTakesDebug() noexcept;
};

}  // namespace Tarnwick_API::Platform
