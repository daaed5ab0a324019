#pragma once

#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Application/ProcessWide.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

/// The writing end of the debug channel, for this project's own code.
class DebugChannel {
public:
    /// Who reads the channel, and whether they may see secrets. Lines that may hold some are made for one reader: the
    /// one who is there when they are written may be another.
    class Reader {
    public:
        /// Nobody.
        Reader() = default;

        explicit operator bool() const noexcept { return logger_ != nullptr; }
        [[nodiscard]] Logging::Secrets secrets() const noexcept { return secrets_; }

        /// As `DebugChannel::write`.
        void write(std::string_view message, const char* function, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE()) const;

    private:
        friend class DebugChannel;
        Reader(std::shared_ptr<spdlog::logger> logger, Logging::Secrets secrets) noexcept
            : logger_{std::move(logger)}, secrets_{secrets} {}

        std::shared_ptr<spdlog::logger> logger_;
        Logging::Secrets secrets_ = Logging::Secrets::hidden;
    };

    /// Puts off what this thread writes until it goes, or the outer one within which it was made: for as long as a lock
    /// is held, or others wait. The host's sink may come back for the same.
    class Deferral {
    public:
        Deferral() noexcept;
        ~Deferral();
        Deferral(const Deferral&) = delete;
        Deferral& operator=(const Deferral&) = delete;

    private:
        friend class Reader;
        struct Line {
            Reader reader;
            std::string message;
            const char* function;
            const char* file;
            int line;
        };
        std::vector<Line> lines_;
    };

    /// Nobody while the channel is closed, which with no logger installed takes one load and one branch.
    [[nodiscard]] static Reader reader() { return ProcessValuesInUse::hasLogger() ? readerOfDebug() : Reader{}; }

    /// Ask before building a message. With no logger installed this is one load and one branch.
    [[nodiscard]] static bool isOpen() noexcept { return ProcessValuesInUse::hasLogger() && loggerTakesDebug(); }

    /// Writes `message`, which holds nothing secret, as it stands. `function` is the operation's name, a literal:
    /// inside a lambda the compiler's own name for the place would say nothing. `file` and `line` are the caller's.
    // Not std::source_location: clang 14 lacks it with this standard library.
    static void write(std::string_view message, const char* function, const char* file = __builtin_FILE(),
                      int line = __builtin_LINE());

    /// Writes `what` and, where secrets may be shown, what the exception says that is being handled: a host's own may
    /// name whatever it was given.
    static void writeException(std::string_view what, const char* function, const char* file = __builtin_FILE(),
                               int line = __builtin_LINE()) noexcept;

private:
    static bool loggerTakesDebug() noexcept;
    static Reader currentReader();
    static Reader readerOfDebug();
};

}  // namespace Tarnwick_API::Platform
