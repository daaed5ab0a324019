#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

namespace Tarnwick_API::Platform {

std::optional<std::string> KeychainStore::message(KeychainStatus status) const {
    switch (status) {
        case KeychainStatus::success:
            return "No error.";
        case KeychainStatus::param:
            return "One or more parameters passed to a function were not valid.";
        case KeychainStatus::userCanceled:
            return "User canceled the operation.";
        case KeychainStatus::unknownFormat:
            return "Unknown format in import.";
        case KeychainStatus::notAvailable:
            return "No keychain is available. You may need to restart your computer.";
        case KeychainStatus::authFailed:
            return "The user name or passphrase you entered is not correct.";
        case KeychainStatus::invalidKeychain:
            return "The specified keychain is not a valid keychain file.";
        case KeychainStatus::duplicateItem:
            return "The specified item already exists in the keychain.";
        case KeychainStatus::itemNotFound:
            return "The specified item could not be found in the keychain.";
        case KeychainStatus::interactionNotAllowed:
            return "User interaction is not allowed.";
        case KeychainStatus::missingEntitlement:
            return "A required entitlement isn't present.";
        case KeychainStatus::diskFull:
            return "The disk is full.";
        case KeychainStatus::io:
            return "I/O error.";
        case KeychainStatus::writePermission:
            return "Write permissions error.";
    }
    return "OSStatus " + std::to_string(static_cast<std::int32_t>(status));
}

}  // namespace Tarnwick_API::Platform
