#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Keychain/StoredKeychainItem.hpp>
#include <Platform/Text/Wiping.hpp>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

namespace {

void wipeData(StoredKeychainItem& item) {
    if (item.data) {
        wipe(*item.data);
    }
}

class MemoryKeychainStore final : public KeychainStore {
public:
    MemoryKeychainStore() = default;
    MemoryKeychainStore(const MemoryKeychainStore&) = delete;
    MemoryKeychainStore& operator=(const MemoryKeychainStore&) = delete;
    ~MemoryKeychainStore() override { std::for_each(items_.begin(), items_.end(), &wipeData); }

    KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override {
        const std::lock_guard lock{mutex_};
        const auto item = firstMatch(query);
        return item == items_.end() ? KeychainAnswer{KeychainStatus::itemNotFound, {}} : answerShowing(*item, wanted);
    }

    KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override {
        const std::lock_guard lock{mutex_};
        const auto item = firstMatch(target);
        if (item == items_.end()) {
            return KeychainStatus::itemNotFound;
        }
        if (changes.account) {
            const auto holder = firstMatch({item->service, changes.account});
            if (holder != items_.end() && holder != item) {
                return KeychainStatus::duplicateItem;
            }
            item->account = *changes.account;
        }
        if (changes.data) {
            wipeData(*item);
            item->data = changes.data;
        }
        if (changes.comment) {
            item->comment = *changes.comment;
        }
        return KeychainStatus::success;
    }

    KeychainStatus add(const KeychainItem& item) override {
        const std::lock_guard lock{mutex_};
        if (firstMatch({item.service, item.account}) != items_.end()) {
            return KeychainStatus::duplicateItem;
        }
        items_.push_back({item.service, item.account, item.label, item.comment, item.data, freshPersistentReference(),
                          item.accessibility});
        return KeychainStatus::success;
    }

    KeychainStatus remove(const KeychainQuery& target) override {
        const std::lock_guard lock{mutex_};
        const auto kept = std::stable_partition(items_.begin(), items_.end(),
                                                [&](const auto& item) { return !matches(item, target); });
        if (kept == items_.end()) {
            return KeychainStatus::itemNotFound;
        }
        std::for_each(kept, items_.end(), &wipeData);
        items_.erase(kept, items_.end());
        return KeychainStatus::success;
    }

    KeychainStoreState state() override { return {"memory", {}, KeychainStatus::success}; }

private:
    std::vector<StoredKeychainItem>::iterator firstMatch(const KeychainQuery& query) {
        return std::find_if(items_.begin(), items_.end(), [&](const auto& item) { return matches(item, query); });
    }

    std::mutex mutex_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner};
    std::vector<StoredKeychainItem> items_;  // the oldest first
};

}  // namespace

std::shared_ptr<KeychainStore> makeMemoryKeychainStore() {
    return std::make_shared<MemoryKeychainStore>();
}

}  // namespace Tarnwick_API::Platform
