#pragma once

#include <Platform/Keychain/KeyringConnection.hpp>

#include <chrono>
#include <functional>
#include <memory>

namespace Platform {

/// One thread that does everything with the keyring, so that nobody else waits longer than the patience. It starts with
/// the first call; it owns what it works with, so nobody waits for its end either.
class KeyringThread {
public:
    using Work = std::function<void(KeyringConnection&)>;

    explicit KeyringThread(std::chrono::milliseconds patience);
    KeyringThread(const KeyringThread&) = delete;
    KeyringThread& operator=(const KeyringThread&) = delete;
    /// Cancels what is under way.
    ~KeyringThread();

    enum class End {
        done,
        /// Not done within the patience. The work is told so (`KeyringConnection::beforeStep`), and goes on as far as
        /// it must; until it ends, others are refused.
        givenUp,
        /// Not begun, and never will be: an earlier one that was given up is still under way.
        refused,
    };
    /// Runs `work`, which throws nothing. Thread: any; one work at a time.
    [[nodiscard]] End run(Work work);

private:
    class State;

    std::chrono::milliseconds patience_;
    std::shared_ptr<State> state_;
};

}  // namespace Platform
