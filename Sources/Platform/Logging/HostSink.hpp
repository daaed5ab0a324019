#pragma once

#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Concurrency/ProcessFork.hpp>

#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <utility>

#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>

namespace Tarnwick_API::Platform {

/// Hands log entries to a function of the host's, one at a time, and holds no lock meanwhile. An entry that comes while
/// the function runs is left to the thread that it runs on, so that the function may wait for whoever brought it.
///
/// A function that does not come back at all costs the entries behind it: so many are kept. In a child of `fork`, where
/// the thread that it runs on may be missing, entries that would have to wait for it are dropped.
class HostSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    explicit HostSink(Logging::Sink sink) : sink_{std::move(sink)} {}

    static constexpr std::size_t mostWaiting = 8192;

private:
    struct Waiting {
        std::string message;
        Logging::Severity severity;
        const char* function;
        const char* file;
        int line;
    };

    void sink_it_(const spdlog::details::log_msg& message) override {
        const auto textOrEmpty = [](const char* text) { return text != nullptr ? text : ""; };
        const Logging::Entry entry{severityOf(message.level),
                                   {message.payload.data(), message.payload.size()},
                                   textOrEmpty(message.source.funcname),
                                   textOrEmpty(message.source.filename),
                                   message.source.line};
        if (!begin(entry)) {
            return;
        }
        auto thrown = call(entry);
        for (Waiting next; takeNext(next);) {
            const auto its = call({next.severity, next.message, next.function, next.file, next.line});
            thrown = thrown ? thrown : its;
        }
        if (thrown) {
            std::rethrow_exception(thrown);
        }
    }

    void flush_() override {}

    /// Whether the caller is to call the function now; otherwise `entry` is left to who does.
    [[nodiscard]] bool begin(const Logging::Entry& entry) {
        const std::lock_guard lock{mutex_};
        if (!isCalling_) {
            isCalling_ = true;
            return true;
        }
        if (madeIn_ == forkGeneration() && waiting_.size() < mostWaiting) {
            waiting_.push_back({std::string{entry.message}, entry.severity, entry.function, entry.file, entry.line});
        }
        return false;
    }

    /// False when there is none, and the caller has done its part.
    [[nodiscard]] bool takeNext(Waiting& next) noexcept {
        const std::lock_guard lock{mutex_};
        isCalling_ = !waiting_.empty();
        if (isCalling_) {
            next = std::move(waiting_.front());
            waiting_.pop_front();
        }
        return isCalling_;
    }

    /// Gives what the function throws.
    [[nodiscard]] std::exception_ptr call(const Logging::Entry& entry) const noexcept {
        try {
            sink_(entry);
        } catch (const std::exception&) {
            return std::current_exception();
        } catch (...) {
            // The logger reports standard exceptions, and lets all others through to whoever logs.
            return std::make_exception_ptr(
                spdlog::spdlog_ex{"the log sink threw something that is no standard exception"});
        }
        return nullptr;
    }

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

    const Logging::Sink sink_;
    const unsigned madeIn_ = forkGeneration();
    std::mutex mutex_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner};
    bool isCalling_ = false;
    std::deque<Waiting> waiting_;
};

}  // namespace Tarnwick_API::Platform
