#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Platform/Text/Wiping.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

std::int64_t timeOfWriting() {
    return WallClock::now().time_since_epoch().count();
}

Bytes freshPersistentReference() {
    return Uuid::random().uuidString();
}

bool matches(const StoredKeychainItem& item, const KeychainQuery& query) {
    return (!query.service || *query.service == item.service) && (!query.account || *query.account == item.account);
}

KeychainAnswer answerShowing(StoredKeychainItem item, const KeychainReturn& wanted) {
    if (item.data && !wanted.data) {
        wipe(*item.data);
    }
    if (!wanted.attributes && !wanted.data && !wanted.persistentReference) {
        return {};
    }
    if (!wanted.attributes && wanted.data != wanted.persistentReference) {
        if (wanted.persistentReference) {
            return {KeychainStatus::success, std::move(item.persistentReference)};
        }
        return item.data ? KeychainAnswer{KeychainStatus::success, std::move(*item.data)} : KeychainAnswer{};
    }
    KeychainDictionary shown;
    if (wanted.attributes) {
        shown.service = std::move(item.service);
        shown.account = std::move(item.account);
        shown.label = std::move(item.label);
        shown.comment = std::move(item.comment);
        shown.accessibility = std::move(item.accessibility);
    }
    if (wanted.data) {
        shown.data = std::move(item.data);
    }
    if (wanted.persistentReference) {
        shown.persistentReference = std::move(item.persistentReference);
    }
    return {KeychainStatus::success, std::move(shown)};
}

}  // namespace Tarnwick_API::Platform
