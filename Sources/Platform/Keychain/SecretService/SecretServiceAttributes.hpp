#pragma once

#include <Platform/Keychain/SecretService/GLibOwners.hpp>
#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <cstdint>
#include <optional>
#include <string>

#include <libsecret/secret.h>

namespace Tarnwick_API::Platform {

/// What the Secret Service keeps for an item, besides the secret and the label.
struct SecretServiceAttributes {
    std::string service;
    std::string account;
    std::string comment;
    /// The persistent reference. The Secret Service's own name for an item may be used again after a deletion.
    std::string reference;
    /// Microseconds since 1970 when the item was added, and later than those of the service before it: the Secret
    /// Service's own time counts in seconds.
    std::int64_t created = 0;
    /// An item that is replaced by another has the same reference and a lower revision. One that is not finished yet
    /// has that of a draft.
    std::int64_t revision = 1;
    static constexpr std::int64_t draft = 0;
    /// An item without data looks to the Secret Service like one with empty data.
    bool hasData = false;
    /// None for an item of earlier versions, all of which were made accessible always.
    std::optional<std::string> accessibility = std::nullopt;
    /// See `StoredKeychainItem::written`. None for an item of earlier versions.
    std::optional<std::int64_t> written = std::nullopt;

    friend bool operator==(const SecretServiceAttributes&, const SecretServiceAttributes&) = default;
};

/// A label or an attribute as the Secret Service takes it. Text lies there as it is, so that other programs find it;
/// what the bus can't carry (bytes that are no UTF-8, NUL) lies as "base64:" and its Base64 form, and so does text that
/// begins with "base64:".
[[nodiscard]] std::string secretServiceText(const std::string& bytes);
[[nodiscard]] std::string bytesOfSecretServiceText(const std::string& text);

/// What our items are, by a name that no other program has.
[[nodiscard]] const SecretSchema* secretServiceSchema();
/// What notes that an item has moved here from another store: its reference and when it was written, no secret.
[[nodiscard]] const SecretSchema* movedItemSchema();
/// What they were by a name that any program might have.
[[nodiscard]] const SecretSchema* formerSecretServiceSchema();

[[nodiscard]] GLibOwner<GHashTable> tableOf(const SecretServiceAttributes& attributes);
/// What finds all our items of `service`, or all our items.
[[nodiscard]] GLibOwner<GHashTable> tableToFind(const std::optional<std::string>& service);
/// The same of a note on an item that has moved.
[[nodiscard]] GLibOwner<GHashTable> tableOfMoved(const Bytes& reference, std::int64_t written);
[[nodiscard]] GLibOwner<GHashTable> tableToFindMoved(const Bytes& reference);
[[nodiscard]] std::int64_t writtenOfMoved(GHashTable* table);
/// None for an item that is not ours.
[[nodiscard]] std::optional<SecretServiceAttributes> attributesOf(GHashTable* table);

}  // namespace Tarnwick_API::Platform
