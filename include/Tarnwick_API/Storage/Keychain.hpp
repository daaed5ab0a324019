#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// A stored user name, and the reference by which the system's network extensions find the secret.
struct TokenData {
    std::string username;
    Platform::Bytes passwordReference;

    friend bool operator==(const TokenData&, const TokenData&) = default;
};

/// A stored user name with its secret. Of an item that the library has written, these are an access token and its
/// secret.
struct LoginData {
    std::string username;
    std::string password;

    /// What signing out leaves in the access token's place: the item is overwritten, not deleted, and so keeps its
    /// reference. Nothing secret, and nothing that a session can be brought back with.
    [[nodiscard]] static LoginData signedOutPlaceholder() { return {"wipe", "wipe"}; }
    /// Whether this is that placeholder: nobody is signed in, as with no item at all.
    [[nodiscard]] bool isSignedOutPlaceholder() const { return *this == signedOutPlaceholder(); }

    friend bool operator==(const LoginData&, const LoginData&) = default;
};

/// What the keychain has for a service, or why that can't be told.
struct KeptLogin {
    std::optional<LoginData> data;
    Platform::KeychainStatus status = Platform::KeychainStatus::success;
};

/// One secret for each service name, kept in the platform's keychain. Library and application read and write it here.
///
/// Items may be read without asking the user by the application itself and by the two components of the system that
/// set up VPN connections, where the keychain knows such lists.
/// Thread: any. Every operation is a short series of synchronous calls of the keychain on the caller's thread; nothing
/// guards the series, so of two `setPassword` for one service at the same time either may win.
/// Errors: none. What fails reads as missing; `setPassword` and `resetRequiresUserInteraction` write a line to standard
/// output when the keychain refuses to change an existing item, and why a secret could not be kept is on the debug
/// channel.
class TARNWICK_API_EXPORT Keychain {
public:
    /// The comment of an item whose secret has been written and for which `resetRequiresUserInteraction` has not been
    /// called since.
    [[nodiscard]] static const std::string& requiresUserInteractionValue();

    /// Writes the secret under `account`. An item that the service has already is changed in place, whatever its
    /// account, and keeps its reference; only one that can't be changed is deleted and made anew. A password that is no
    /// UTF-8 is left out: a new item is then without a secret, a changed one keeps the secret that it had. The label of
    /// new items is the main bundle's "CFBundleName", or "VPN App" without one, as it is at the process's first call.
    static void setPassword(const std::string& service, const std::string& account, const std::string& password);

    /// As `setPassword`, and gives what the keychain made of it: `success` when the item is kept.
    [[nodiscard]] static Platform::KeychainStatus keepPassword(const std::string& service, const std::string& account,
                                                               const std::string& password);

    /// Gives the item's secret as `getLoginData` does, and without one what the keychain said: `success` when it told
    /// that there is none, `interactionNotAllowed` when it is locked, anything else when it can't be read.
    [[nodiscard]] static KeptLogin keptLogin(const std::string& service);

    /// None, for every item that this class writes, and on purpose so: the keychain answers with bare bytes where a
    /// dictionary is expected here. `getLoginData` gives the secret.
    [[nodiscard]] static std::optional<std::string> getPassword(const std::string& service, const std::string& account);

    /// The reference of the item; it stays the same through every change of account and secret. Not so in the keychain
    /// of macOS, which makes it of service and account: ask for it again after each sign-in and sign-out.
    [[nodiscard]] static std::optional<Platform::Bytes> getPasswordReference(const std::string& service,
                                                                             const std::string& account);

    /// The item's account with its reference; none without an item.
    [[nodiscard]] static std::optional<TokenData> getTokenData(const std::string& service);

    /// None also for an item without a secret, or one that is no UTF-8. The empty secret is a secret. After signing out
    /// this gives `LoginData::signedOutPlaceholder`.
    [[nodiscard]] static std::optional<LoginData> getLoginData(const std::string& service);

    /// Whether `getLoginData` gives something, the placeholder included: not whether somebody is signed in.
    [[nodiscard]] static bool hasLoginData(const std::string& service);

    /// Deletes what the keychain has for the service, whatever the account.
    static void deleteItem(const std::string& service);

    /// Whether the secret was written after the last `resetRequiresUserInteraction`. False without an item.
    [[nodiscard]] static bool requiresUserInteraction(const std::string& service);

    /// Makes `requiresUserInteraction` false, until the next `setPassword`.
    static void resetRequiresUserInteraction(const std::string& service);

    /// Asks the user to unlock the keychain. On Linux no other operation raises a prompt: on a locked keychain they
    /// fail at once. On macOS the system asks by itself, within the operation that needs the answer. See
    /// `Platform::KeychainStore::unlock`.
    static void unlock(std::function<void(Platform::KeychainStatus)> onCompletion);

    /// The process-wide keychain behind the operations: the one given to `setStore`, or else the user's own, see
    /// `Platform::makeUserKeychainStore`, with the file `Platform::defaultKeychainFile()`, a path that is worked out
    /// once, at the first use.
    [[nodiscard]] static std::shared_ptr<Platform::KeychainStore> store();

    /// Replaces the process-wide keychain; none goes back to the user's own. Operations on their way keep the one they
    /// began with. What a store of the host's own throws counts as `notAvailable`, and is told on the debug channel;
    /// from `unlock`, and from calls of the application's own on `store()`, it reaches the caller.
    static void setStore(std::shared_ptr<Platform::KeychainStore> store);
};

}  // namespace Tarnwick_API
