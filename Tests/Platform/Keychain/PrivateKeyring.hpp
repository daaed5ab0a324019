#pragma once

#include "TemporaryFolder.hpp"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/// A session bus and a real keyring in a home of their own, which the environment of this process names from then on.
/// Nothing of the user's own is touched, and nothing that is started here outlives this process. Throws when a program
/// is missing.
class PrivateKeyring {
public:
    /// Starts the bus alone.
    PrivateKeyring();
    PrivateKeyring(const PrivateKeyring&) = delete;
    PrivateKeyring& operator=(const PrivateKeyring&) = delete;
    ~PrivateKeyring();

    void startBus();
    void endBus();

    /// Starts the keyring and waits until the bus knows it. With a password it has a default collection, made with the
    /// first one; another one leaves that locked. Without one it has what it had, locked.
    void startKeyring(const std::optional<std::string>& password = "password");
    /// Kills it.
    void endKeyring();
    /// Returns when it has stopped.
    void freezeKeyring() const;
    void thawKeyring() const;
    [[nodiscard]] pid_t keyringProcess() const { return keyring_; }

    void lock() const;
    void unlock() const;
    /// How many items of any kind the keyring finds for a service, by the bus.
    [[nodiscard]] int count(const std::string& service) const;

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

private:
    TemporaryFolder folder_;
    pid_t bus_ = -1;
    pid_t keyring_ = -1;
};

/// Runs a program to its end and gives what it wrote. Throws when it fails.
std::string outputOf(const std::vector<std::string>& command, const std::string& input = {});
