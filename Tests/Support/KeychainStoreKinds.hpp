#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include "PrivateKeyring.hpp"

#include <chrono>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace Tarnwick_API::Platform {

/// A kind of store that the tests of what all stores do run on.
struct KeychainStoreKind {
    std::string name;
    /// An empty store, which may keep its items in `folder`.
    std::shared_ptr<KeychainStore> (*make)(const std::filesystem::path& folder);
};

inline void PrintTo(const KeychainStoreKind& kind, std::ostream* out) {
    *out << kind.name;
}

/// `store` made with `make`, with a keyring of its own that lives as long.
template <class Make>
std::shared_ptr<KeychainStore> withKeyring(Make make) {
    struct Owner {
        PrivateKeyring keyring;
        std::shared_ptr<KeychainStore> store;
    };
    const auto owner = std::make_shared<Owner>();
    owner->keyring.startKeyring();
    owner->store = make();
    return {owner, owner->store.get()};
}

/// Longer than any machine takes that is merely busy.
inline constexpr std::chrono::milliseconds longTimeout = std::chrono::seconds{60};

inline std::vector<KeychainStoreKind> everyKeychainStoreKind() {
    return {
        {"Memory", [](const std::filesystem::path&) { return makeMemoryKeychainStore(); }},
        {"File", [](const std::filesystem::path& folder) { return makeFileKeychainStore(folder / "keychain.sqlite"); }},
        {"SecretService",
         [](const std::filesystem::path&) {
             return withKeyring([] { return makeSecretServiceKeychainStore(longTimeout); });
         }},
        {"UserWithSecretService",
         [](const std::filesystem::path& folder) {
             return withKeyring([&] { return makeUserKeychainStore(folder / "keychain.sqlite", longTimeout); });
         }},
    };
}

}  // namespace Tarnwick_API::Platform
