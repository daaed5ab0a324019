#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

namespace Tarnwick_API::Platform {

/// An item as a store of our own keeps it.
struct StoredKeychainItem {
    std::string service;
    std::string account;
    std::string label;
    std::string comment;
    std::optional<Bytes> data;
    Bytes persistentReference;

    friend bool operator==(const StoredKeychainItem&, const StoredKeychainItem&) = default;
};

/// A persistent reference that no item has had: 36 random characters.
[[nodiscard]] Bytes freshPersistentReference();

[[nodiscard]] bool matches(const StoredKeychainItem& item, const KeychainQuery& query);

/// The successful answer that shows `item` in the shape asked for.
[[nodiscard]] KeychainAnswer answerShowing(StoredKeychainItem item, const KeychainReturn& wanted);

}  // namespace Tarnwick_API::Platform
