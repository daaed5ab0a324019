#pragma once

#include <Tarnwick_API/Platform/Bytes.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Platform {

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
};

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

/// A new item. Accessible always, also before the user unlocks the screen, where the store knows such a thing.
struct KeychainItem {
    std::string service;
    std::string account;
    std::optional<Bytes> data;
    std::string label;
    KeychainAccess access;
    std::string comment;
};

/// The keychain's calls, as the platform has them, with its result codes. (account, service) is unique: a second
/// such item is refused with `duplicateItem`. A persistent reference names one item for its whole life, through
/// updates of any attribute, and is never used again.
/// Thread: any; every call is synchronous and whole: the item is the old or the new one, whatever happens.
class KeychainStore {
public:
    KeychainStore() = default;
    KeychainStore(const KeychainStore&) = delete;
    KeychainStore& operator=(const KeychainStore&) = delete;
    virtual ~KeychainStore() = default;

    /// The first match, the oldest item first.
    [[nodiscard]] virtual KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) = 0;
    /// Changes the first match in place.
    [[nodiscard]] virtual KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) = 0;
    [[nodiscard]] virtual KeychainStatus add(const KeychainItem& item) = 0;
    /// Deletes every match.
    [[nodiscard]] virtual KeychainStatus remove(const KeychainQuery& target) = 0;
    /// The platform's message for a status; English here, the user's language where the platform has its own. None
    /// when the platform has none.
    [[nodiscard]] virtual std::optional<std::string> message(KeychainStatus status) const;
};

/// A store that forgets with the process.
[[nodiscard]] std::shared_ptr<KeychainStore> makeMemoryKeychainStore();

/// A store in one private file (mode 0600, SQLite) at `path`. The first `add` makes the file, and its folder
/// (mode 0700) when missing; nothing happens before the first call, and each call tells by its status what went wrong:
/// `writePermission`, `diskFull`, `io`, `invalidKeychain` for what is no keychain file (never deleted, and a symbolic
/// link is not followed), `unknownFormat` for a file of a later version, `notAvailable` when another process keeps the
/// file locked for a second, or otherwise.
[[nodiscard]] std::shared_ptr<KeychainStore> makeFileKeychainStore(const std::string& path);

/// `$XDG_DATA_HOME` (when absolute) or `~/.local/share`, then the main bundle's identifier (or the program's name when
/// that is no file name), then "keychain.sqlite". Empty, which no store can open, when the user has no home.
[[nodiscard]] std::string defaultKeychainFile();

}  // namespace Platform
