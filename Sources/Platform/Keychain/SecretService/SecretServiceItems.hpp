#pragma once

#include <Platform/Keychain/SecretService/SecretServiceAttributes.hpp>
#include <Platform/Keychain/SecretService/SecretServiceConnection.hpp>

#include <span>
#include <vector>

namespace Tarnwick_API::Platform {

/// Our items in the default collection, for one call. Operations throw SecretServiceError.
///
/// The Secret Service changes the secret and the attributes of an item by two calls, and keeps two items alike. So what
/// changes both is written as a new item of the same reference and a higher revision, before the old one is deleted:
/// whoever is killed in between leaves two, of which the higher counts, and the next write deletes the other. Of two
/// items with the same service and account, which two processes have added at once, the older counts. A new item is a
/// draft, which never counts, until a change of its attributes makes it good: the Secret Service brings a new item to
/// the disk first without its secret.
class SecretServiceItems {
public:
    /// Throws when the collection is locked: to a search it may look empty then. `mayHaveFormerItems`, whether some of
    /// our items may still lie under the former schema, is kept from call to call.
    SecretServiceItems(SecretServiceConnection& connection, bool& mayHaveFormerItems);

    [[nodiscard]] KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted);
    [[nodiscard]] KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes);
    [[nodiscard]] KeychainStatus add(const KeychainItem& item);
    [[nodiscard]] KeychainStatus remove(const KeychainQuery& target);

    /// Adds what another store has had, with the references, and reads it back. An item whose reference is here already
    /// has been migrated before, and so has one that is noted as moved; it counts again only when it was written after
    /// that. Where the service has other items here, those that were written last stay, and the others go. Those of the
    /// former schema keep it, as with another they would count as written now.
    void migrate(const std::vector<StoredKeychainItem>& items);
    /// Notes that the items are here, whatever becomes of them, for as long as the other store can't be emptied.
    void noteMoved(const std::vector<StoredKeychainItem>& items);
    void forgetMoved(const std::vector<StoredKeychainItem>& items);

private:
    struct Item {
        SecretServiceAttributes attributes;
        GLibOwner<SecretItem> handle;
    };
    struct Found {
        /// The oldest first.
        std::vector<Item> items;
        /// What doesn't count any more, in the order in which it may be deleted.
        std::vector<Item> leftovers;
    };

    [[nodiscard]] Found find(const std::optional<std::string>& service);
    [[nodiscard]] std::vector<Item> search(const std::optional<std::string>& service);
    [[nodiscard]] std::vector<Item> search(const SecretSchema* schema, const std::optional<std::string>& service);
    [[nodiscard]] std::vector<GLibOwner<SecretItem>> searchHandles(const SecretSchema* schema, GHashTable* attributes);
    /// Brings the items of the former schema under the present one, each by one change of its attributes. Those that
    /// can't be changed still count, and the next call tries again.
    void renameFormerItems();
    [[nodiscard]] KeychainStatus addOnce(const KeychainItem& item);
    void migrateOnce(const std::vector<StoredKeychainItem>& items);
    void migrateOne(const StoredKeychainItem& item, const std::vector<StoredKeychainItem>& all);
    void verify(const StoredKeychainItem& item);
    /// The notes on the item.
    [[nodiscard]] std::vector<GLibOwner<SecretItem>> notesOn(const StoredKeychainItem& item);
    [[nodiscard]] bool isNotedAsMoved(const StoredKeychainItem& item);
    /// Whether it was still there.
    bool erase(SecretItem* item);
    void setAttributes(SecretItem* item, const SecretServiceAttributes& attributes);
    /// The handle of the new item.
    GLibOwner<SecretItem> create(const SecretServiceAttributes& attributes, const std::string& label,
                                 const std::optional<Bytes>& data);
    [[nodiscard]] GLibOwner<SecretItem> createHandle(const SecretSchema* schema, GHashTable* attributes,
                                                     const std::string& label, const std::optional<Bytes>& data);
    /// Throws that there is no such item when another process removes it meanwhile.
    void change(const Item& item, const SecretServiceAttributes& changed, const std::optional<Bytes>& data);
    [[nodiscard]] bool isReplacedByOthers(const Item& item, SecretItem* ownNext);
    bool erase(const Item& item);
    /// Whether all of them were still there, as far as is known.
    bool tidyUp(std::span<const Item> leftovers);
    [[nodiscard]] Bytes dataOf(const Item& item);
    [[nodiscard]] static std::int64_t writtenOf(const Item& item);
    /// The item with its data when that is asked for.
    [[nodiscard]] StoredKeychainItem stored(const Item& item, bool withData);

    SecretServiceConnection& connection_;
    bool& mayHaveFormerItems_;
    GLibOwner<SecretCollection> collection_;
};

}  // namespace Tarnwick_API::Platform
