#include "Keychain/KeychainChoice.hpp"

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include "Failures/Failure.hpp"
#include "Keychain/SystemKeychain.hpp"

namespace TarnwickClient {

using Tarnwick_API::Keychain;

void installKeychain(const Settings& settings) {
    const auto hasFile = !settings.keychainFile.empty();
    switch (settings.keychain) {
        case KeychainKind::automatic:
            if (hasFile) {
                Keychain::setStore(Tarnwick_API::Platform::makeFileKeychainStore(settings.keychainFile));
            }
            return;
        case KeychainKind::system:
            if (hasFile) {
                throw Failure::usage("A keychain file is given, but keychain = system does not use one.");
            }
            Keychain::setStore(systemKeychain());
            return;
        case KeychainKind::file:
            Keychain::setStore(Tarnwick_API::Platform::makeFileKeychainStore(
                hasFile ? settings.keychainFile : Tarnwick_API::Platform::defaultKeychainFile()));
            return;
    }
}

}  // namespace TarnwickClient
