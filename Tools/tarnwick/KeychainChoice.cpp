#include "KeychainChoice.hpp"

#include <Tarnwick_API/Platform/KeychainStore.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

namespace TarnwickClient {

using Tarnwick_API::Keychain;

void installKeychain(const Settings& settings) {
    const auto hasFile = !settings.keychainFile.empty();
    switch (settings.keychain) {
        case KeychainKind::automatic:
            if (hasFile) {
                Keychain::setStore(Platform::makeFileKeychainStore(settings.keychainFile));
            }
            return;
        case KeychainKind::file:
            Keychain::setStore(
                Platform::makeFileKeychainStore(hasFile ? settings.keychainFile : Platform::defaultKeychainFile()));
            return;
    }
}

}  // namespace TarnwickClient
