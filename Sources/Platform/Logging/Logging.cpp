#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Logging/HostSink.hpp>

#include <exception>
#include <string>
#include <utility>

#include <spdlog/logger.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedLogger{&ProcessValues::logger};

// Whether this thread is inside the host's sinks. What they make the library log must not come back to them: their
// locks are held, and each entry would bring forth the next.
thread_local bool isWriting = false;

/// The outermost one of this thread.
thread_local DebugChannel::Deferral* deferral = nullptr;

class WritingMark {
public:
    WritingMark() noexcept { isWriting = true; }
    ~WritingMark() { isWriting = false; }
    WritingMark(const WritingMark&) = delete;
    WritingMark& operator=(const WritingMark&) = delete;
};

bool takesDebug(const spdlog::logger& logger) {
    return logger.should_log(spdlog::level::debug) || logger.should_backtrace();
}

}  // namespace

void Logging::setLogger(std::shared_ptr<spdlog::logger> logger, Secrets secrets) {
    ProcessValuesInUse::shared().change([&](ProcessValues& values) {
        values.logger.swap(logger);
        values.secretsOfLogger = secrets;
    });
}

void Logging::setSink(Sink sink, Secrets secrets) {
    if (!sink) {
        setLogger(nullptr);
        return;
    }
    // Made by hand: the factory functions would claim the name in the process-wide registry.
    auto logger = std::make_shared<spdlog::logger>("Tarnwick_API", std::make_shared<HostSink>(std::move(sink)));
    logger->set_level(spdlog::level::debug);
    setLogger(std::move(logger), secrets);
}

std::shared_ptr<spdlog::logger> Logging::logger() {
    return installedLogger.get();
}

bool DebugChannel::loggerTakesDebug() noexcept {
    if (isWriting) {
        return false;
    }
    const auto logger = Logging::logger();
    return logger && takesDebug(*logger);
}

DebugChannel::Reader DebugChannel::currentReader() {
    return isWriting ? Reader{} : ProcessValuesInUse::shared().read([](const ProcessValues& values) {
        return Reader{values.logger, values.secretsOfLogger};
    });
}

DebugChannel::Reader DebugChannel::readerOfDebug() {
    auto reader = currentReader();
    return reader && takesDebug(*reader.logger_) ? std::move(reader) : Reader{};
}

void DebugChannel::write(std::string_view message, const char* function, const char* file, int line) {
    if (const auto reader = currentReader()) {
        reader.write(message, function, file, line);
    }
}

void DebugChannel::writeException(std::string_view what, const char* function, const char* file, int line) noexcept {
    try {
        const auto reader = DebugChannel::reader();
        if (!reader) {
            return;
        }
        std::string text{what};
        try {
            throw;
        } catch (const std::exception& error) {
            if (reader.secrets() == Logging::Secrets::shown) {
                text.append(": ").append(error.what());
            }
        } catch (...) {
            // It has nothing to say.
        }
        reader.write(text, function, file, line);
    } catch (const std::exception&) {
        // No memory for a line.
        return;
    }
}

void DebugChannel::Reader::write(std::string_view message, const char* function, const char* file, int line) const {
    if (isWriting) {
        return;
    }
    try {
        if (deferral != nullptr) {
            deferral->lines_.push_back({*this, std::string{message}, function, file, line});
            return;
        }
        const WritingMark mark;
        logger_->log(spdlog::source_loc{file, line, function}, spdlog::level::debug,
                     spdlog::string_view_t{message.data(), message.size()});
    } catch (...) {
        // The logger has reported its sinks' failures by now; what its own report throws must not fail a request.
        return;
    }
}

DebugChannel::Deferral::Deferral() noexcept {
    deferral = deferral == nullptr ? this : deferral;
}

DebugChannel::Deferral::~Deferral() {
    if (deferral != this) {
        return;
    }
    deferral = nullptr;
    for (const auto& [reader, message, function, file, line] : lines_) {
        reader.write(message, function, file, line);
    }
}

}  // namespace Tarnwick_API::Platform
