#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

void SecretServiceItems::migrateOnce(const std::vector<StoredKeychainItem>& items,
                                     std::chrono::system_clock::time_point writtenAt) {
    const auto holds = [](const Found& found, const Bytes& reference) {
        return std::any_of(found.items.begin(), found.items.end(),
                           [&](const Item& each) { return each.attributes.reference == reference; });
    };
    for (const auto& item : items) {
        const auto isMigrated = [&](const Item& each) {
            return std::any_of(items.begin(), items.end(), [&](const StoredKeychainItem& other) {
                return other.persistentReference == each.attributes.reference;
            });
        };
        const auto isLater = [&](const Item& each) {
            return std::chrono::system_clock::time_point{
                       std::chrono::seconds{secret_item_get_modified(each.handle.get())}} >= writtenAt;
        };
        const auto before = find(item.service);
        std::vector<const Item*> others;
        for (const auto& each : before.items) {
            if (!isMigrated(each)) {
                others.push_back(&each);
            }
        }
        if (std::any_of(others.begin(), others.end(), [&](const Item* each) { return isLater(*each); })) {
            continue;
        }
        if (!holds(before, item.persistentReference)) {
            // Before the others of the service, which go: with the same account, the older counts.
            const std::int64_t created =
                others.empty()
                    ? std::max<std::int64_t>(g_get_real_time(),
                                             before.items.empty() ? 0 : before.items.back().attributes.created + 1)
                    : others.front()->attributes.created - 1;
            create(
                {item.service, item.account, item.comment, item.persistentReference, created, 1, item.data.has_value()},
                item.label, item.data);
            const auto after = find(item.service);
            const auto own = std::find_if(after.items.begin(), after.items.end(), [&](const Item& each) {
                return each.attributes.reference == item.persistentReference;
            });
            if (own == after.items.end() || stored(*own, true) != item) {
                throw SecretServiceError{KeychainStatus::io, "an item reads otherwise than it was written"};
            }
        }
        for (const auto& leftover : before.leftovers) {
            erase(leftover);
        }
        for (const auto* other : others) {
            erase(*other);
        }
    }
}

}  // namespace Tarnwick_API::Platform
