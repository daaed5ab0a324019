#pragma once

#include <Platform/Keychain/SecretService/SecretServiceConnection.hpp>

#include <chrono>
#include <functional>
#include <memory>

namespace Tarnwick_API::Platform {

/// One thread that does everything with the Secret Service, so that nobody else waits longer than the timeout. It
/// starts with the first call; it owns what it works with, so nobody waits for its end either.
class SecretServiceWorker {
public:
    using Work = std::function<void(SecretServiceConnection&)>;

    explicit SecretServiceWorker(std::chrono::milliseconds timeout);
    SecretServiceWorker(const SecretServiceWorker&) = delete;
    SecretServiceWorker& operator=(const SecretServiceWorker&) = delete;
    /// Cancels what is under way.
    ~SecretServiceWorker();

    enum class End {
        done,
        /// Not done within the timeout. The work is told so by its token, and goes on as far as it must; until it ends,
        /// others are refused.
        givenUp,
        /// Not begun, and never will be: an earlier one that was given up is still under way.
        refused,
        /// Not begun: see `isLost`.
        lost,
    };
    /// Runs `work`, which throws nothing. Thread: any; one work at a time.
    [[nodiscard]] End run(Work work);

    /// Whether this is a child of `fork` that has not the threads of its parent: neither those for the Secret Service
    /// nor the one that GLib has for the bus, without which every call would wait in vain. Thread: any.
    [[nodiscard]] static bool isLost() noexcept;

    /// As `startDetachedThread`, for all work with the Secret Service.
    [[nodiscard]] static bool startThread(std::function<void()> body);

private:
    class State;

    std::chrono::milliseconds timeout_;
    std::shared_ptr<State> state_;
};

}  // namespace Tarnwick_API::Platform
