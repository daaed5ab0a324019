#include "Keychain/SystemKeychain.hpp"

namespace TarnwickClient {

std::shared_ptr<Tarnwick_API::Platform::KeychainStore> systemKeychain() {
    return Tarnwick_API::Platform::makeSecretServiceKeychainStore();
}

}  // namespace TarnwickClient
