#include "KeychainChoice.hpp"

#include <Tarnwick_API/Platform/KeychainStore.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include <memory>

#include "Failure.hpp"

namespace TarnwickClient {

using Tarnwick_API::Keychain;

namespace {

std::shared_ptr<Platform::KeychainStore> systemKeychain() {
#ifdef __APPLE__
    return Platform::makeSecurityFrameworkKeychainStore();
#else
    return Platform::makeSecretServiceKeychainStore();
#endif
}

}  // namespace

void installKeychain(const Settings& settings) {
    const auto hasFile = !settings.keychainFile.empty();
    switch (settings.keychain) {
        case KeychainKind::automatic:
            if (hasFile) {
                Keychain::setStore(Platform::makeFileKeychainStore(settings.keychainFile));
            }
            return;
        case KeychainKind::system:
            if (hasFile) {
                throw Failure::usage("A keychain file is given, but keychain = system does not use one.");
            }
            Keychain::setStore(systemKeychain());
            return;
        case KeychainKind::file:
            Keychain::setStore(
                Platform::makeFileKeychainStore(hasFile ? settings.keychainFile : Platform::defaultKeychainFile()));
            return;
    }
}

}  // namespace TarnwickClient
