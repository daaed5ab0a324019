#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

/// A search may meet an item that another process is just replacing.
constexpr int attempts = 10;

std::string_view pathOf(SecretItem* item) {
    return g_dbus_proxy_get_object_path(G_DBUS_PROXY(item));
}

bool matches(const SecretServiceAttributes& attributes, const KeychainQuery& query) {
    return (!query.service || *query.service == attributes.service) &&
           (!query.account || *query.account == attributes.account);
}

/// `work`, once more when an item went away under it. That says nothing of whether there is an item.
template <class Work>
auto repeated(Work work) {
    for (int attempt = 1;; ++attempt) {
        try {
            return work();
        } catch (const SecretServiceError& failure) {
            if (failure.status() != KeychainStatus::itemNotFound) {
                throw;
            }
            if (attempt == attempts) {
                throw SecretServiceError{KeychainStatus::notAvailable, "items go while they are read"};
            }
        }
    }
}

}  // namespace

SecretServiceItems::SecretServiceItems(SecretServiceConnection& connection, bool& mayHaveFormerItems)
    : connection_{connection}, mayHaveFormerItems_{mayHaveFormerItems}, collection_{connection.defaultCollection()} {
    if (secret_collection_get_locked(collection_.get()) != FALSE) {
        throw SecretServiceError{KeychainStatus::interactionNotAllowed, "locked"};
    }
}

std::vector<SecretServiceItems::Item> SecretServiceItems::search(const std::optional<std::string>& service) {
    // The former ones first: who is renamed meanwhile is found twice, not missed.
    auto former = mayHaveFormerItems_ ? search(formerSecretServiceSchema(), service) : std::vector<Item>{};
    auto items = search(secretServiceSchema(), service);
    std::erase_if(former, [&](const Item& item) {
        return std::any_of(items.begin(), items.end(), [&](const Item& renamed) {
            return pathOf(renamed.handle.get()) == pathOf(item.handle.get());
        });
    });
    std::move(former.begin(), former.end(), std::back_inserter(items));
    if (items.empty() && connection_.isLocked(collection_.get())) {
        throw SecretServiceError{KeychainStatus::interactionNotAllowed, "locked"};
    }
    return items;
}

std::vector<SecretServiceItems::Item> SecretServiceItems::search(const SecretSchema* schema,
                                                                 const std::optional<std::string>& service) {
    std::vector<Item> items;
    for (auto& handle : searchHandles(schema, tableToFind(service).get())) {
        const GLibOwner<GHashTable> table{secret_item_get_attributes(handle.get())};
        if (auto own = table ? attributesOf(table.get()) : std::nullopt) {
            items.push_back({std::move(*own), std::move(handle)});
        }
    }
    return items;
}

std::vector<GLibOwner<SecretItem>> SecretServiceItems::searchHandles(const SecretSchema* schema,
                                                                     GHashTable* attributes) {
    connection_.token().throwIfGivenUp();
    GLibOwner<GError> error;
    const GLibOwner<GList> list{secret_collection_search_sync(collection_.get(), schema, attributes, SECRET_SEARCH_ALL,
                                                              connection_.token().cancellable(), GLibOutput{error})};
    if (error) {
        throw SecretServiceError::ofItem(error.get(), "searching");
    }
    std::vector<GLibOwner<SecretItem>> handles;
    for (const auto* place = list.get(); place != nullptr; place = place->next) {
        handles.emplace_back(static_cast<SecretItem*>(g_object_ref(place->data)));
    }
    return handles;
}

SecretServiceItems::Found SecretServiceItems::find(const std::optional<std::string>& service) {
    auto items = repeated([&] { return search(service); });
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) {
        const auto key = [](const Item& item) {
            return std::tuple{std::string_view{item.attributes.reference}, item.attributes.revision,
                              pathOf(item.handle.get())};
        };
        return key(a) < key(b);
    });
    Found found;
    for (auto& item : items) {
        if (item.attributes.revision <= SecretServiceAttributes::draft) {
            found.leftovers.push_back(std::move(item));
        } else if (!found.items.empty() && found.items.back().attributes.reference == item.attributes.reference) {
            found.leftovers.push_back(std::exchange(found.items.back(), std::move(item)));
        } else {
            found.items.push_back(std::move(item));
        }
    }
    std::stable_sort(found.items.begin(), found.items.end(),
                     [](const Item& a, const Item& b) { return a.attributes.created < b.attributes.created; });
    std::vector<Item> first;
    for (auto& item : found.items) {
        const KeychainQuery same{item.attributes.service, item.attributes.account};
        const bool isFirst = std::none_of(first.begin(), first.end(),
                                          [&](const Item& older) { return matches(older.attributes, same); });
        (isFirst ? first : found.leftovers).push_back(std::move(item));
    }
    found.items = std::move(first);
    return found;
}

Bytes SecretServiceItems::dataOf(const Item& item) {
    connection_.token().throwIfGivenUp();
    GLibOwner<GError> error;
    if (secret_item_load_secret_sync(item.handle.get(), connection_.token().cancellable(), GLibOutput{error}) ==
        FALSE) {
        throw SecretServiceError::ofItem(error.get(), "reading a secret");
    }
    const GLibOwner<SecretValue> value{secret_item_get_secret(item.handle.get())};
    if (!value) {
        throw SecretServiceError{KeychainStatus::io, "no secret is given"};
    }
    gsize size = 0;
    const auto* const bytes = secret_value_get(value.get(), &size);
    return {bytes, size};
}

std::int64_t SecretServiceItems::writtenOf(const Item& item) {
    // Without a time of ours, the Secret Service's, which counts in seconds.
    return item.attributes.written.value_or(std::max(
        item.attributes.created, static_cast<std::int64_t>(secret_item_get_modified(item.handle.get())) * 1'000'000));
}

StoredKeychainItem SecretServiceItems::stored(const Item& item, bool withData) {
    const GLibOwner<char> label{secret_item_get_label(item.handle.get())};
    return {item.attributes.service,
            item.attributes.account,
            bytesOfSecretServiceText(label ? label.get() : ""),
            item.attributes.comment,
            withData && item.attributes.hasData ? std::optional{dataOf(item)} : std::nullopt,
            item.attributes.reference,
            item.attributes.accessibility.value_or(keychainAccessibleAlways),
            writtenOf(item)};
}

KeychainAnswer SecretServiceItems::copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) {
    renameFormerItems();
    return repeated([&]() -> KeychainAnswer {
        // Not by account: a leftover may have another one than the item that counts.
        const auto found = find(query.service);
        const auto item = std::find_if(found.items.begin(), found.items.end(),
                                       [&](const Item& each) { return matches(each.attributes, query); });
        if (item == found.items.end()) {
            return {KeychainStatus::itemNotFound, {}};
        }
        return answerShowing(stored(*item, wanted.data), wanted);
    });
}

KeychainStatus SecretServiceItems::update(const KeychainQuery& target, const KeychainChanges& changes) {
    renameFormerItems();
    return repeated([&] {
        const auto found = find(target.service);
        const auto item = std::find_if(found.items.begin(), found.items.end(),
                                       [&](const Item& each) { return matches(each.attributes, target); });
        if (item == found.items.end()) {
            return KeychainStatus::itemNotFound;
        }
        auto changed = item->attributes;
        changed.account = changes.account.value_or(changed.account);
        changed.comment = changes.comment.value_or(changed.comment);
        changed.hasData = changed.hasData || changes.data;
        changed.accessibility = changed.accessibility.value_or(keychainAccessibleAlways);
        // Also for a comment: the Secret Service's own time changes with that.
        changed.written =
            changes.account || changes.data ? std::max(timeOfWriting(), writtenOf(*item) + 1) : writtenOf(*item);
        const auto isTaken = [&](const Item& other) {
            return &other != &*item && matches(other.attributes, {changed.service, changed.account});
        };
        if (std::any_of(found.items.begin(), found.items.end(), isTaken)) {
            return KeychainStatus::duplicateItem;
        }
        change(*item, changed, changes.data);
        tidyUp(found.leftovers);
        return KeychainStatus::success;
    });
}

KeychainStatus SecretServiceItems::add(const KeychainItem& item) {
    renameFormerItems();
    return repeated([&] { return addOnce(item); });
}

KeychainStatus SecretServiceItems::addOnce(const KeychainItem& item) {
    const auto before = find(item.service);
    if (std::any_of(before.items.begin(), before.items.end(),
                    [&](const Item& other) { return other.attributes.account == item.account; })) {
        return KeychainStatus::duplicateItem;
    }
    const auto reference = freshPersistentReference();
    const std::int64_t afterOthers = before.items.empty() ? 0 : before.items.back().attributes.created + 1;
    create({item.service, item.account, item.comment, reference, std::max<std::int64_t>(g_get_real_time(), afterOthers),
            1, item.data.has_value(), item.accessibility, timeOfWriting()},
           item.label, item.data);
    const auto isOwn = [&](const Item& each) { return each.attributes.reference == reference; };
    try {
        const auto after = find(item.service);
        tidyUp(after.leftovers);
        return std::any_of(after.leftovers.begin(), after.leftovers.end(), isOwn) ? KeychainStatus::duplicateItem
                                                                                  : KeychainStatus::success;
    } catch (const SecretServiceError&) {
        return KeychainStatus::success;  // it has been added; whether another has too, the next call sees
    }
}

KeychainStatus SecretServiceItems::remove(const KeychainQuery& target) {
    renameFormerItems();
    auto status = KeychainStatus::itemNotFound;
    // Until there is none: another process may replace one just now.
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto found = find(target.service);
        // First: without the items that count, they would count.
        for (const auto& leftover : found.leftovers) {
            erase(leftover);
        }
        bool areGone = true;
        for (const auto& item : found.items) {
            if (matches(item.attributes, target)) {
                erase(item);
                areGone = false;
            }
        }
        if (areGone) {
            return status;
        }
        status = KeychainStatus::success;
    }
    throw SecretServiceError{KeychainStatus::notAvailable, "items come while they are removed"};
}

void SecretServiceItems::migrate(const std::vector<StoredKeychainItem>& items) {
    repeated([&] { migrateOnce(items); });
}

}  // namespace Tarnwick_API::Platform
