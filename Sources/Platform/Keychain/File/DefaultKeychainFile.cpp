#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <Platform/Application/UserFolders.hpp>

namespace Tarnwick_API::Platform {

std::string defaultKeychainFile() {
    const auto folder = userFolder("XDG_DATA_HOME", std::filesystem::path{".local"} / "share");
    return folder.empty() ? std::string{} : (folder / applicationFolderName() / "keychain.sqlite").string();
}

}  // namespace Tarnwick_API::Platform
