#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <cstdint>

namespace Tarnwick_API::Platform {

/// An item as a store of our own keeps it.
struct StoredKeychainItem {
    std::string service;
    std::string account;
    std::string label;
    std::string comment;
    std::optional<Bytes> data;
    Bytes persistentReference;
    std::string accessibility = keychainAccessibleAlways;
    /// When the account or the data were last written, in microseconds since 1970.
    std::int64_t written = 0;

    friend bool operator==(const StoredKeychainItem&, const StoredKeychainItem&) = default;
};

/// The time for what is written now.
[[nodiscard]] std::int64_t timeOfWriting();

/// A persistent reference that no item has had: 36 random characters.
[[nodiscard]] Bytes freshPersistentReference();

[[nodiscard]] bool matches(const StoredKeychainItem& item, const KeychainQuery& query);

/// The successful answer that shows `item` in the shape asked for.
[[nodiscard]] KeychainAnswer answerShowing(StoredKeychainItem item, const KeychainReturn& wanted);

}  // namespace Tarnwick_API::Platform
