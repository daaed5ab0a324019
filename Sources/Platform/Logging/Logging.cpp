#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Logging/HostSink.hpp>

#include <utility>

#include <spdlog/logger.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedLogger{&ProcessValues::logger};

// Whether this thread is inside the host's sinks. What they make the library log must not come back to them: their
// locks are held, and each entry would bring forth the next.
thread_local bool isWriting = false;

class WritingMark {
public:
    WritingMark() noexcept { isWriting = true; }
    ~WritingMark() { isWriting = false; }
    WritingMark(const WritingMark&) = delete;
    WritingMark& operator=(const WritingMark&) = delete;
};

}  // namespace

void Logging::setLogger(std::shared_ptr<spdlog::logger> logger) {
    installedLogger.set(std::move(logger));
}

void Logging::setSink(Sink sink) {
    if (!sink) {
        setLogger(nullptr);
        return;
    }
    // Made by hand: the factory functions would claim the name in the process-wide registry.
    auto logger = std::make_shared<spdlog::logger>("Tarnwick_API", std::make_shared<HostSink>(std::move(sink)));
    logger->set_level(spdlog::level::debug);
    setLogger(std::move(logger));
}

std::shared_ptr<spdlog::logger> Logging::logger() {
    return installedLogger.get();
}

bool DebugChannel::loggerTakesDebug() noexcept {
    if (isWriting) {
        return false;
    }
    const auto logger = Logging::logger();
    return logger && (logger->should_log(spdlog::level::debug) || logger->should_backtrace());
}

void DebugChannel::write(std::string_view message, const char* function, const char* file, int line) {
    const auto logger = isWriting ? nullptr : Logging::logger();
    if (!logger) {
        return;
    }
    const WritingMark mark;
    try {
        logger->log(spdlog::source_loc{file, line, function}, spdlog::level::debug,
                    spdlog::string_view_t{message.data(), message.size()});
    } catch (...) {
        // The logger has reported its sinks' failures by now; what its own report throws must not fail a request.
        return;
    }
}

}  // namespace Tarnwick_API::Platform
