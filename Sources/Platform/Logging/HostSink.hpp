#pragma once

#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <exception>
#include <mutex>
#include <utility>

#include <spdlog/sinks/base_sink.h>

namespace Tarnwick_API::Platform {

/// Hands log entries to a function of the host's, one at a time.
class HostSink final : public spdlog::sinks::base_sink<std::mutex> {
public:
    explicit HostSink(Logging::Sink sink) : sink_{std::move(sink)} {}

private:
    void sink_it_(const spdlog::details::log_msg& message) override {
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
};

}  // namespace Tarnwick_API::Platform
