#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

void SecretServiceItems::migrateOnce(const std::vector<StoredKeychainItem>& items) {
    for (const auto& item : items) {
        migrateOne(item, items);
    }
}

void SecretServiceItems::migrateOne(const StoredKeychainItem& item, const std::vector<StoredKeychainItem>& all) {
    const auto isMigrated = [&](const Item& each) {
        return std::any_of(all.begin(), all.end(), [&](const StoredKeychainItem& other) {
            return other.persistentReference == each.attributes.reference;
        });
    };
    const auto before = find(item.service);
    std::vector<const Item*> others;
    for (const auto& each : before.items) {
        if (!isMigrated(each)) {
            others.push_back(&each);
        }
    }
    if (std::any_of(others.begin(), others.end(), [&](const Item* each) { return writtenOf(*each) >= item.written; })) {
        return;
    }
    const auto own = std::find_if(before.items.begin(), before.items.end(), [&](const Item& each) {
        return each.attributes.reference == item.persistentReference;
    });
    if (own == before.items.end()) {
        if (isNotedAsMoved(item)) {
            return;
        }
        // Before the others of the service, which go: with the same account, the older counts.
        const std::int64_t created =
            others.empty()
                ? std::max<std::int64_t>(g_get_real_time(),
                                         before.items.empty() ? 0 : before.items.back().attributes.created + 1)
                : others.front()->attributes.created - 1;
        create({item.service, item.account, item.comment, item.persistentReference, created, 1, item.data.has_value(),
                item.accessibility, item.written},
               item.label, item.data);
        verify(item);
    } else if (writtenOf(*own) < item.written) {
        auto changed = own->attributes;
        changed.account = item.account;
        changed.comment = item.comment;
        changed.hasData = item.data.has_value();
        changed.accessibility = item.accessibility;
        changed.written = item.written;
        change(*own, changed, item.data);
        verify(item);
    }
    for (const auto& leftover : before.leftovers) {
        erase(leftover);
    }
    for (const auto* other : others) {
        erase(*other);
    }
}

void SecretServiceItems::verify(const StoredKeychainItem& item) {
    const auto found = find(item.service);
    const auto own = std::find_if(found.items.begin(), found.items.end(), [&](const Item& each) {
        return each.attributes.reference == item.persistentReference;
    });
    auto read = own == found.items.end() ? StoredKeychainItem{} : stored(*own, true);
    read.label = item.label;  // one that was there before keeps its own
    if (read != item) {
        throw SecretServiceError{KeychainStatus::io, "an item reads otherwise than it was written"};
    }
}

std::vector<GLibOwner<SecretItem>> SecretServiceItems::notesOn(const StoredKeychainItem& item) {
    return searchHandles(movedItemSchema(), tableToFindMoved(item.persistentReference).get());
}

bool SecretServiceItems::isNotedAsMoved(const StoredKeychainItem& item) {
    const auto notes = notesOn(item);
    return std::any_of(notes.begin(), notes.end(), [&](const auto& note) {
        const GLibOwner<GHashTable> table{secret_item_get_attributes(note.get())};
        return table && writtenOfMoved(table.get()) >= item.written;
    });
}

void SecretServiceItems::noteMoved(const std::vector<StoredKeychainItem>& items) {
    for (const auto& item : items) {
        if (!isNotedAsMoved(item)) {
            static_cast<void>(createHandle(movedItemSchema(),
                                           tableOfMoved(item.persistentReference, item.written).get(), item.label,
                                           std::nullopt));
        }
    }
}

void SecretServiceItems::forgetMoved(const std::vector<StoredKeychainItem>& items) {
    for (const auto& item : items) {
        for (const auto& note : notesOn(item)) {
            erase(note.get());
        }
    }
}

}  // namespace Tarnwick_API::Platform
