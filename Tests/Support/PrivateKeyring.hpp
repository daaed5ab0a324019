#pragma once

#include "Program.hpp"
#include "TemporaryFolder.hpp"

#include <optional>
#include <string>

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

    /// Starts the keyring, in place of one that runs, and waits until the bus knows it. With a password it has a
    /// default collection, made with the first one; another one leaves that locked. Without one it has what it had,
    /// locked.
    void startKeyring(const std::optional<std::string>& password = "password");
    /// Has the bus, when it is started next, start the program for whoever asks for a keyring.
    void letTheBusStart(const std::string& program) const;
    /// Kills it.
    void endKeyring();
    /// Returns when it has stopped.
    void freezeKeyring() const;
    void thawKeyring() const;
    [[nodiscard]] pid_t keyringProcess() const { return keyring_->id(); }

    void lock() const;
    /// How many items of any kind the keyring finds for a service, or by another attribute, by the bus.
    [[nodiscard]] int count(const std::string& value, const std::string& attribute = "service") const;

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

private:
    TemporaryFolder folder_;
    std::optional<Program> bus_;
    std::optional<Program> keyring_;
};
