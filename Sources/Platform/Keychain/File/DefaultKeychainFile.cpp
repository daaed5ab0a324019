#include <Tarnwick_API/Platform/KeychainStore.hpp>

#include <Platform/Application/UserFolders.hpp>

namespace Platform {

std::string defaultKeychainFile() {
    const auto folder = userFolder("XDG_DATA_HOME", std::filesystem::path{".local"} / "share");
    return folder.empty() ? std::string{} : (folder / applicationFolderName() / "keychain.sqlite").string();
}

}  // namespace Platform
