#pragma once

#include <Platform/Keychain/SecretService/GLibOwners.hpp>

#include <atomic>

#include <gio/gio.h>

namespace Tarnwick_API::Platform {

/// One call of the Secret Service, between the thread that waits for it and the thread that does it; both own it. Each
/// call has a cancellable of its own, as GLib may still touch one on the second thread while the first cancels it.
/// Thread: any.
class CallToken {
public:
    CallToken() = default;
    CallToken(const CallToken&) = delete;
    CallToken& operator=(const CallToken&) = delete;

    /// Nobody waits for the call any more. The step under way goes on to its end: cancelling one whose answer just
    /// comes in is not safe in every version of GLib.
    void giveUp() noexcept { isGivenUp_ = true; }
    [[nodiscard]] bool isGivenUp() const noexcept { return isGivenUp_; }
    /// To ask before each step.
    void throwIfGivenUp() const;

    /// Gives the call up and ends its step, as a last resort: the connection is not to be used again.
    void cancel() noexcept;
    [[nodiscard]] GCancellable* cancellable() const noexcept { return cancellable_.get(); }

private:
    std::atomic<bool> isGivenUp_ = false;
    const GLibOwner<GCancellable> cancellable_{g_cancellable_new()};
};

}  // namespace Tarnwick_API::Platform
