#include <Tarnwick_API/Storage/Keychain.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Text/Utf8.hpp>
#include <Platform/Text/Wiping.hpp>
#include <Storage/CarefulKeychain.hpp>

#include <cstdio>
#include <string_view>
#include <utility>
#include <variant>

namespace Tarnwick_API {

namespace {

using Platform::Bytes;
using Platform::KeychainAnswer;
using Platform::KeychainDictionary;
using Platform::KeychainQuery;
using Platform::KeychainStatus;
using Platform::KeychainStore;

constexpr const char* networkExtensionAgent = "/usr/libexec/neagent";
constexpr const char* networkPreferences =
    "/System/Library/PreferencePanes/Network.prefPane/Contents/XPCServices/"
    "com.apple.preference.network.remoteservice.xpc";

constexpr Platform::ProcessWide installedStore{&Platform::ProcessValues::keychainStore};

/// Worked out at the first use: one installation's items bear one name, whatever bundle is set later.
const std::string& label() {
    // Never destroyed: an operation may still run while the process exits.
    static const auto& text =
        *std::make_unique<const std::string>(Platform::Bundle::main()->text("CFBundleName").value_or("VPN App"))
             .release();
    return text;
}

std::optional<Bytes> encoded(const std::string& password) {
    return Platform::isValidUtf8(password) ? std::optional<Bytes>{password} : std::nullopt;
}

std::optional<std::string> decoded(std::optional<Bytes> data) {
    return data && Platform::isValidUtf8(*data) ? std::move(data) : std::nullopt;
}

/// The attributes of a successful answer; none for anything else.
std::optional<KeychainDictionary> dictionaryOf(KeychainAnswer answer) {
    auto* const dictionary = std::get_if<KeychainDictionary>(&answer.value);
    if (answer.status != KeychainStatus::success || dictionary == nullptr) {
        return std::nullopt;
    }
    return std::move(*dictionary);
}

void reportError(const CarefulKeychain& store, KeychainStatus status) {
    const auto line = "Keychain error: " + store.message(status).value_or("") + '\n';
    std::fputs(line.c_str(), stdout);
}

template <typename Carrier>
void wipeData(Carrier& carrier) {
    if (carrier.data) {
        Platform::wipe(*carrier.data);
    }
}

KeychainStatus updateExisting(const CarefulKeychain& store, const std::string& service, const std::string& account,
                              const std::string& password) {
    auto answer = store.copyMatching({.service = service}, {.attributes = true});
    if (answer.status != KeychainStatus::success) {
        return answer.status;
    }
    const auto existing = dictionaryOf(std::move(answer));
    if (!existing) {
        return KeychainStatus::unknownFormat;
    }
    Platform::KeychainChanges changes{
        .account = account, .data = encoded(password), .comment = Keychain::requiresUserInteractionValue()};
    const auto status = store.update({.service = service, .account = existing->account}, changes);
    wipeData(changes);
    if (status != KeychainStatus::success) {
        reportError(store, status);
    }
    return status;
}

void deleteAll(const CarefulKeychain& store, const std::string& service) {
    static_cast<void>(store.remove({.service = service}));
}

}  // namespace

const std::string& Keychain::requiresUserInteractionValue() {
    // Never destroyed: an operation may still run while the process exits.
    static const auto& value = *std::make_unique<const std::string>("requires user interaction").release();
    return value;
}

void Keychain::setPassword(const std::string& service, const std::string& account, const std::string& password) {
    // No caller is told of a failure: whoever reads finds no item.
    static_cast<void>(keepPassword(service, account, password));
}

KeychainStatus Keychain::keepPassword(const std::string& service, const std::string& account,
                                      const std::string& password) {
    const auto& name = label();
    const CarefulKeychain keychain;
    const auto status = updateExisting(keychain, service, account, password);
    if (status == KeychainStatus::success) {
        return status;
    }
    if (status != KeychainStatus::itemNotFound) {
        deleteAll(keychain, service);
    }
    Platform::KeychainItem item{.service = service,
                                .account = account,
                                .data = encoded(password),
                                .label = name,
                                .access = {name, {std::nullopt, networkExtensionAgent, networkPreferences}},
                                .comment = requiresUserInteractionValue(),
                                .accessibility = Platform::keychainAccessibleAlways};
    const auto added = keychain.add(item);
    wipeData(item);
    if (added != KeychainStatus::success && Platform::DebugChannel::isOpen()) {
        Platform::DebugChannel::write(
            "Keychain: the password for " + service + " is not kept: " + keychain.message(added).value_or(""),
            "setPassword");
    }
    return added;
}

std::optional<std::string> Keychain::getPassword(const std::string& service, const std::string& account) {
    auto found = dictionaryOf(
        CarefulKeychain{}.copyMatching({.service = service, .account = account}, {.data = true, .limitOne = true}));
    return found ? decoded(std::move(found->data)) : std::nullopt;
}

std::optional<Bytes> Keychain::getPasswordReference(const std::string& service, const std::string& account) {
    auto answer = CarefulKeychain{}.copyMatching({.service = service, .account = account},
                                                 {.persistentReference = true, .limitOne = true});
    auto* const reference = std::get_if<Bytes>(&answer.value);
    if (answer.status != KeychainStatus::success || reference == nullptr) {
        return std::nullopt;
    }
    return std::move(*reference);
}

std::optional<TokenData> Keychain::getTokenData(const std::string& service) {
    auto found = dictionaryOf(CarefulKeychain{}.copyMatching(
        {.service = service}, {.attributes = true, .persistentReference = true, .limitOne = true}));
    if (!found || !found->account || !found->persistentReference) {
        return std::nullopt;
    }
    return TokenData{std::move(*found->account), std::move(*found->persistentReference)};
}

std::optional<LoginData> Keychain::getLoginData(const std::string& service) {
    return keptLogin(service).data;
}

KeptLogin Keychain::keptLogin(const std::string& service) {
    auto answer =
        CarefulKeychain{}.copyMatching({.service = service}, {.attributes = true, .data = true, .limitOne = true});
    const auto status = answer.status == KeychainStatus::itemNotFound ? KeychainStatus::success : answer.status;
    auto found = dictionaryOf(std::move(answer));
    if (!found || !found->account) {
        return {std::nullopt, status};
    }
    auto password = decoded(std::move(found->data));
    if (!password) {
        return {std::nullopt, status};
    }
    return {LoginData{std::move(*found->account), std::move(*password)}, status};
}

bool Keychain::hasLoginData(const std::string& service) {
    return getLoginData(service).has_value();
}

void Keychain::deleteItem(const std::string& service) {
    deleteAll({}, service);
}

bool Keychain::requiresUserInteraction(const std::string& service) {
    const auto found =
        dictionaryOf(CarefulKeychain{}.copyMatching({.service = service}, {.attributes = true, .limitOne = true}));
    return found && found->comment == requiresUserInteractionValue();
}

void Keychain::resetRequiresUserInteraction(const std::string& service) {
    const CarefulKeychain keychain;
    const KeychainQuery query{.service = service};
    if (keychain.copyMatching(query, {}).status != KeychainStatus::success) {
        return;
    }
    const auto status = keychain.update(query, {.comment = ""});
    if (status != KeychainStatus::success) {
        reportError(keychain, status);
    }
}

void Keychain::unlock(std::function<void(KeychainStatus)> onCompletion) {
    store()->unlock(std::move(onCompletion));
}

std::shared_ptr<KeychainStore> Keychain::store() {
    if (auto store = installedStore.get()) {
        return store;
    }
    // Never destroyed: an operation may still run while the process exits.
    static const auto& ofTheUser = *std::make_unique<std::shared_ptr<KeychainStore>>(
                                        Platform::makeUserKeychainStore(Platform::defaultKeychainFile()))
                                        .release();
    return ofTheUser;
}

void Keychain::setStore(std::shared_ptr<KeychainStore> store) {
    installedStore.set(std::move(store));
}

}  // namespace Tarnwick_API
