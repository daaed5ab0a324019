#pragma once

#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Concurrency/ProcessFork.hpp>

#include <exception>
#include <mutex>
#include <utility>

#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>

namespace Tarnwick_API::Platform {

/// Hands log entries to a function of the host's, one at a time. In a child of `fork`, where a thread that is missing
/// may have been at one for ever, entries that would have to wait for another are dropped.
class HostSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    explicit HostSink(Logging::Sink sink) : sink_{std::move(sink)} {}

private:
    void sink_it_(const spdlog::details::log_msg& message) override {
        std::unique_lock lock{mutex_, std::defer_lock};
        if (madeIn_ == forkGeneration()) {
            lock.lock();
        } else if (!lock.try_lock()) {
            return;
        }
        const auto textOrEmpty = [](const char* text) { return text != nullptr ? text : ""; };
        try {
            sink_({severityOf(message.level),
                   {message.payload.data(), message.payload.size()},
                   textOrEmpty(message.source.funcname),
                   textOrEmpty(message.source.filename),
                   message.source.line});
        } catch (const std::exception&) {
            throw;
        } catch (...) {
            // The logger reports standard exceptions, and lets all others through to whoever logs.
            throw spdlog::spdlog_ex{"the log sink threw something that is no standard exception"};
        }
    }

    void flush_() override {}

    static Logging::Severity severityOf(spdlog::level::level_enum level) {
        switch (level) {
            case spdlog::level::info:
                return Logging::Severity::info;
            case spdlog::level::warn:
                return Logging::Severity::warning;
            case spdlog::level::err:
            case spdlog::level::critical:
                return Logging::Severity::error;
            default:
                return Logging::Severity::debug;
        }
    }

    Logging::Sink sink_;
    std::mutex mutex_;
    const unsigned madeIn_ = forkGeneration();
};

}  // namespace Tarnwick_API::Platform
