#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <Platform/Application/ApplicationName.hpp>
#include <Platform/Application/UserFolders.hpp>

namespace Tarnwick_API::Platform {

std::string defaultKeychainFile() {
    const auto folder = userDataFolder();
    return folder.empty() ? std::string{} : (folder / applicationFolderName() / "keychain.sqlite").string();
}

}  // namespace Tarnwick_API::Platform
