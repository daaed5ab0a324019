#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <memory>
#include <string>

namespace TarnwickClient {

/// What has been tried so far, for people who wait and for the words about a failure.
struct TransferLog {
    int tries = 0;
    /// What the last try failed of; empty when it has not failed.
    std::string lastError;
    /// Answers by `HttpAnswer::Source`.
    int fromService = 0;
    int fromCache = 0;
    int confirmed = 0;
};

/// Where the answers came from, in words.
[[nodiscard]] std::string sourcesText(const TransferLog& log);

/// A session that passes everything on and notes what happens.
class WatchedSession final : public Tarnwick_API::Platform::HttpSession {
public:
    WatchedSession(std::shared_ptr<Tarnwick_API::Platform::HttpSession> session, std::shared_ptr<TransferLog> log)
        : session_{std::move(session)}, log_{std::move(log)} {}

    [[nodiscard]] const Tarnwick_API::Platform::HttpHeaders& defaultHeaders() const override {
        return session_->defaultHeaders();
    }
    [[nodiscard]] bool isReachable(std::string_view urlText) const override;
    void send(std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request, Completion onCompletion) override;

private:
    std::shared_ptr<Tarnwick_API::Platform::HttpSession> session_;
    std::shared_ptr<TransferLog> log_;
};

}  // namespace TarnwickClient
