#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include "Client/TransferLog.hpp"
#include "Configuration/Settings.hpp"
#include "Failures/Failure.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace TarnwickClient {

/// The library set up for one command, and the program's main loop while an operation is under way.
class Client {
public:
    /// `settings` must have what `requireServiceSettings` asks for. Throws `Failure` when the installation has no id.
    explicit Client(const Settings& settings);

    [[nodiscard]] Tarnwick_API::TarnwickApi& api() const noexcept { return *api_; }
    [[nodiscard]] const Settings& settings() const noexcept { return settings_; }

    /// Adopts the kept token, without asking the service. Throws `Failure` when there is none, or when the keychain
    /// does not tell.
    void requireSignIn() const;
    /// As above, but goes on without a token.
    void adoptStoredToken() const;
    /// Throws `Failure` when the keychain has not kept the token of a sign-in that has just been.
    void requireKept() const;
    /// Forgets a stored token that the service does not know any more. Throws `Failure` when it may still be there.
    void forgetStoredToken() const;
    /// Throws `Failure` unless the keychain has lost the token of a sign-out that has just been.
    void requireWiped() const;

    /// How one operation ended; neither a value nor an error means that the answer held nothing usable.
    template <typename T>
    struct Outcome {
        bool isThere = false;
        std::optional<T> value;
        std::optional<Tarnwick_API::ApiError> error;
    };

    /// Starts an operation and waits for its completion. Throws `Failure` when there is none within the time set.
    template <typename T>
    Outcome<T> outcome(const std::string& doing, const std::function<void(Tarnwick_API::Completion<T>)>& start) {
        const auto outcome = std::make_shared<Outcome<T>>();
        start([outcome](std::optional<T> value, std::optional<Tarnwick_API::ApiError> error) {
            *outcome = {true, std::move(value), std::move(error)};
        });
        wait(doing, [outcome] { return outcome->isThere; });
        return std::move(*outcome);
    }

    /// The result of an operation. Throws `Failure` when it has none.
    template <typename T>
    T ask(const std::string& doing, const std::function<void(Tarnwick_API::Completion<T>)>& start) {
        auto answer = outcome<T>(doing, start);
        if (answer.error) {
            throw failure(*answer.error);
        }
        if (!answer.value) {
            throw Failure{ExitStatus::noAnswer, "noData", "The service answered, but with nothing that can be used."};
        }
        return std::move(*answer.value);
    }

    /// Waits for an operation without result and gives its error, if any.
    std::optional<Tarnwick_API::ApiError> error(const std::string& doing,
                                                const std::function<void(Tarnwick_API::Completion<void>)>& start);

    /// As above. Throws `Failure` for an error.
    void run(const std::string& doing, const std::function<void(Tarnwick_API::Completion<void>)>& start);

    /// What has been sent and received.
    [[nodiscard]] const TransferLog& transfers() const noexcept { return transfers_; }

    [[nodiscard]] Failure failure(const Tarnwick_API::ApiError& error) const {
        return Failure::from(error, transfers_.lastError);
    }

private:
    void wait(const std::string& doing, const std::function<bool()>& isDone);

    const Settings& settings_;
    std::shared_ptr<Tarnwick_API::Platform::BuiltInMainQueue> queue_;
    std::shared_ptr<Tarnwick_API::TarnwickApi> api_;
    TransferLog transfers_;
    Tarnwick_API::AttemptObservers::Observation observation_;
};

}  // namespace TarnwickClient
