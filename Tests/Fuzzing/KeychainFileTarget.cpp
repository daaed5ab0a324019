// A damaged keychain file: an item that is found is one that was asked for, what is added is kept, and what was there
// is not lost.

#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include "DamagedFile.hpp"

using namespace Tarnwick_API::Platform;

KeychainItem itemOf(const std::string& service) {
    return {service, "token", "secret of " + service, "VPN", {}, "requires user interaction"};
}

std::string goodFile(const std::filesystem::path& file) {
    FileKeychainStore store{file};
    static_cast<void>(store.add(itemOf("a")));
    static_cast<void>(store.add(itemOf("b")));
    return contentOf(file);
}

bool isFound(FileKeychainStore& store, const std::string& service, bool isWhole) {
    const auto answer = store.copyMatching({.service = service}, {.attributes = true, .data = true});
    require(answer.status == KeychainStatus::success || store.message(answer.status), "a failure has a message");
    const auto* const found = std::get_if<KeychainDictionary>(&answer.value);
    require(found == nullptr || found->service == service, "an item that is found is one that was asked for");
    require(found == nullptr || !isWhole || found->data == itemOf(service).data, "it holds what was kept");
    return found != nullptr;
}

void fuzz(FuzzInput input) {
    static const TemporaryFolder folder;
    const auto file = folder.path() / "keychain";
    static const auto good = goodFile(file);
    const auto kind = input.choice(3);
    const auto bytes = writeDamaged(file, good, input);
    const bool isGood = bytes == good;
    FileKeychainStore store{file, std::chrono::milliseconds{20}};
    require((isFound(store, "a", isGood) && isFound(store, "b", isGood)) || !isGood, "a good file is read");
    require(contentOf(file) == bytes, "reading changes nothing");
    if (kind == 1) {
        static_cast<void>(store.update({.service = "a"}, {.data = "another"}));
    } else if (kind == 2 && store.remove({.service = "a"}) == KeychainStatus::success) {
        require(!isFound(store, "a", false), "what is removed is not found");
    }
    const auto added = store.add(itemOf("new"));
    require(added != KeychainStatus::success || isFound(store, "new", true), "what is added is found");
    require(added == KeychainStatus::success || !isGood, "a good file takes another item");
    const auto aside = store.state().damagedFile;
    require(aside.empty() || kind != 0 || contentOf(aside) == bytes, "what is set aside is what was there");
}
