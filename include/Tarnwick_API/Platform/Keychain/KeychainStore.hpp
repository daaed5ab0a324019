#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Tarnwick_API::Platform {

/// A result code of the keychain, with the platform's own numbers. Other numbers are possible.
enum class KeychainStatus : std::int32_t {
    success = 0,
    param = -50,
    userCanceled = -128,
    unknownFormat = -25257,
    notAvailable = -25291,
    authFailed = -25293,
    invalidKeychain = -25295,
    duplicateItem = -25299,
    itemNotFound = -25300,
    interactionNotAllowed = -25308,
    missingEntitlement = -34018,
    diskFull = -34,
    io = -36,
    writePermission = -61,
};

/// Which generic-password items are meant. An absent field matches any.
struct KeychainQuery {
    std::optional<std::string> service = std::nullopt;
    std::optional<std::string> account = std::nullopt;
};

/// What a look-up gives back. Exactly one of the three: that value itself; several: a dictionary; none: existence.
struct KeychainReturn {
    bool attributes = false;
    bool data = false;
    bool persistentReference = false;
    /// Whether "one match" is asked for in words; without it the platform gives one all the same.
    bool limitOne = false;
};

/// The answer when several kinds of value, or the attributes, were asked for.
struct KeychainDictionary {
    std::optional<std::string> service;
    std::optional<std::string> account;
    std::optional<std::string> label;
    std::optional<std::string> comment;
    std::optional<Bytes> data;
    std::optional<Bytes> persistentReference;
    /// See `KeychainItem::accessibility`.
    std::optional<std::string> accessibility = std::nullopt;
};

/// What a look-up gives.
struct KeychainAnswer {
    KeychainStatus status = KeychainStatus::success;
    /// Nothing, bare bytes (data or a persistent reference asked for alone), or a dictionary.
    std::variant<std::monostate, Bytes, KeychainDictionary> value;
};

/// Changes to an item; absent fields stay as they are.
struct KeychainChanges {
    std::optional<std::string> account = std::nullopt;
    std::optional<Bytes> data = std::nullopt;
    std::optional<std::string> comment = std::nullopt;
};

/// Who may read an item without asking the user. Stores without such lists ignore it.
struct KeychainAccess {
    std::string description;
    /// In this order; none stands for the calling application itself. A store that makes a reference for each makes
    /// those with a path first, in their order, and the calling application's last.
    std::vector<std::optional<std::string>> trustedApplicationPaths;
};

/// The accessibility of an item that may be read at any time, also before the user unlocks the screen.
inline constexpr const char* keychainAccessibleAlways = "always";

/// A new item.
struct KeychainItem {
    std::string service;
    std::string account;
    std::optional<Bytes> data;
    std::string label;
    KeychainAccess access;
    std::string comment;
    /// When the item may be read. Each store keeps it; only the platform's own keychain acts on it, and knows no other
    /// one than `keychainAccessibleAlways`.
    std::string accessibility = keychainAccessibleAlways;
};

/// What a store says of itself.
struct KeychainStoreState {
    /// For people, such as "Secret Service" or "private file".
    std::string name;
    /// Where the items lie, such as a file; empty when there is no telling.
    std::string location = {};
    /// `success`: ready to be read and written. `interactionNotAllowed`: locked until it is unlocked. Anything else:
    /// why it can't be used, or not in full, see `isReadOnly`.
    KeychainStatus status = KeychainStatus::success;
    /// Whether items can be looked up all the same, though none can be written.
    bool isReadOnly = false;
    /// Where a damaged keychain file lies that was set aside; the latest one of several, empty when there is none. It
    /// may still have secrets in it, and is left to the user.
    std::string damagedFile = {};
};

/// The keychain's calls, as the platform has them, with its result codes. (account, service) is unique: a second
/// such item is refused with `duplicateItem`. A persistent reference names one item for its whole life, through
/// updates of any attribute, and is never used again.
/// Thread: any; every call is synchronous and whole: the item is the old or the new one, whatever happens.
class TARNWICK_API_EXPORT KeychainStore {
public:
    KeychainStore() = default;
    KeychainStore(const KeychainStore&) = delete;
    KeychainStore& operator=(const KeychainStore&) = delete;
    virtual ~KeychainStore() = default;

    /// The first match, the oldest item first.
    [[nodiscard]] virtual KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) = 0;
    /// Changes the first match in place.
    [[nodiscard]] virtual KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) = 0;
    /// Adds an item; `duplicateItem` when account and service have one.
    [[nodiscard]] virtual KeychainStatus add(const KeychainItem& item) = 0;
    /// Deletes every match.
    [[nodiscard]] virtual KeychainStatus remove(const KeychainQuery& target) = 0;
    /// A sentence about a status, for users: what is the matter with this store, as of its last call, and what helps.
    /// English here; where the platform has its own messages, those, in the user's language. None when it has none.
    [[nodiscard]] virtual std::optional<std::string> message(KeychainStatus status) const;

    /// Asks without a prompt. Thread: any, for as long as any other call.
    [[nodiscard]] virtual KeychainStoreState state();

    /// Asks the user to unlock the store, where it has a lock, for as long as the user takes. The one call that raises
    /// a prompt; no other does. `onCompletion` gets `success` when the store is unlocked afterwards, also when it was
    /// before, `userCanceled` when the user dismissed the prompt, `interactionNotAllowed` when none can be shown. It is
    /// called once, on the main queue installed now, never from inside this call. Thread: any.
    virtual void unlock(std::function<void(KeychainStatus)> onCompletion);
};

/// How long an operation on a Secret Service that doesn't answer may take.
inline constexpr std::chrono::milliseconds defaultKeychainTimeout = std::chrono::seconds{1};

/// A store that forgets with the process.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<KeychainStore> makeMemoryKeychainStore();

/// A store in one private file (mode 0600, SQLite) at `path`. The first `add` makes the file, and its folder
/// (mode 0700) when missing; nothing happens before the first call, and each call tells by its status what went wrong:
/// `writePermission`, `diskFull`, `io`, `invalidKeychain` for what is no keychain file, `unknownFormat` for a file of a
/// later version, `notAvailable` when another process keeps the file locked for a second, or otherwise. After such a
/// second, further calls are refused at once until the file is free.
///
/// What is no keychain file is left exactly as it is, and a symbolic link is not followed. A keychain file that is
/// damaged gives `invalidKeychain` to who reads; the next `add` or `remove` sets it aside beside its place, as
/// "NAME.damaged-TIME" with all that it has, and begins with a new one. At `defaultKeychainFile()` a file that is no
/// database at all is taken for damaged, too.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<KeychainStore> makeFileKeychainStore(const std::string& path);

/// The desktop's keyring: the default collection of the Secret Service on the session bus. Linux only.
///
/// No call waits longer than `timeout`; a Secret Service that hasn't answered by then is given up with `notAvailable`,
/// and so are further calls, at once, until it does answer. Statuses: `interactionNotAllowed` when the collection is
/// locked, `notAvailable` without a session bus of this user, a Secret Service or a default collection. An item has the
/// attributes "service", "account", "comment", "accessible" and "ref", the persistent reference, so that other programs
/// find it.
/// In a child of `fork` whose parent has used such a store, every call fails at once with `notAvailable`, and says why
/// on the debug channel.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<KeychainStore> makeSecretServiceKeychainStore(
    std::chrono::milliseconds timeout = defaultKeychainTimeout);

/// The user's keychain through the Security framework. macOS only.
///
/// The system itself asks the user where it needs to, within any call, for as long as the user takes; `state` and
/// `unlock` ask nothing and say `success`. Text that is no UTF-8 or has a NUL is refused with `param`. Of several
/// matches a file keychain, the kind that a program without entitlements gets, removes the first one only, and its
/// references change with the account.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<KeychainStore> makeSecurityFrameworkKeychainStore();

/// The store for a desktop application, chosen at the first call. macOS: the user's keychain. Linux: the Secret Service
/// when the user's session bus offers one with a default collection, and the private file `file` otherwise, also on the
/// bus of another user; what was chosen, and why, is on the debug channel. What the file holds from a time without a
/// Secret Service migrates to it as soon as that is unlocked: an item leaves the file only after the Secret Service has
/// it, and keeps its reference. A process that has chosen the file and finds nothing there any more follows. Where the
/// Secret Service has another item of the same service, the one stays whose account or data were written last, by the
/// computer's clock. A Secret Service that doesn't answer is no reason to take the file: calls then fail
/// with `notAvailable`, and the next one chooses. `timeout` is that of the Secret Service, for each of what a call may
/// have to do: choose, migrate or wait for the call that does, and its own work.
[[nodiscard]] TARNWICK_API_EXPORT std::shared_ptr<KeychainStore> makeUserKeychainStore(
    std::string file, std::chrono::milliseconds timeout = defaultKeychainTimeout);

/// `$XDG_DATA_HOME` (when absolute) or `~/.local/share`, on macOS `~/Library/Application Support`, then the main
/// bundle's identifier (or the program's name when that is no file name), then "keychain.sqlite". Empty, which no store
/// can open, when the user has no home.
[[nodiscard]] TARNWICK_API_EXPORT std::string defaultKeychainFile();

}  // namespace Tarnwick_API::Platform
