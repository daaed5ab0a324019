#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <Platform/CoreFoundation/CoreFoundationValues.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Security/Security.h>

// Access lists and items that are readable while the screen is locked: deprecated, but nothing else lets the system's
// VPN components read an item of the file keychain.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace Tarnwick_API::Platform {

namespace {

/// A dictionary that a call takes; its members stand in the order in which they were added.
class Arguments {
public:
    Arguments& add(CFStringRef key, CFTypeRef value) {
        if (value == nullptr || !dictionary_) {
            isWhole_ = false;
        } else {
            CFDictionaryAddValue(dictionary_.get(), key, value);
        }
        return *this;
    }
    Arguments& addText(CFStringRef key, const std::optional<std::string>& text) {
        return text ? add(key, coreFoundationText(*text).get()) : *this;
    }
    Arguments& addData(CFStringRef key, const std::optional<Bytes>& bytes) {
        return bytes ? add(key, coreFoundationData(*bytes).get()) : *this;
    }
    Arguments& addIf(bool isWanted, CFStringRef key, CFTypeRef value) { return isWanted ? add(key, value) : *this; }

    /// None when a member could not be made: a call without it would mean something else.
    [[nodiscard]] CFDictionaryRef get() const { return isWhole_ ? dictionary_.get() : nullptr; }

private:
    Owned<CFMutableDictionaryRef> dictionary_{CFDictionaryCreateMutable(
        kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks)};
    bool isWhole_ = true;
};

Arguments argumentsOf(const KeychainQuery& query) {
    Arguments arguments;
    arguments.add(kSecClass, kSecClassGenericPassword)
        .addText(kSecAttrService, query.service)
        .addText(kSecAttrAccount, query.account);
    return arguments;
}

const void* retainReference(CFAllocatorRef /*allocator*/, const void* reference) {
    return reference == nullptr ? nullptr : CFRetain(reference);
}

void releaseReference(CFAllocatorRef /*allocator*/, const void* reference) {
    if (reference != nullptr) {
        CFRelease(reference);
    }
}

/// An array that may have gaps, which the framework's own kinds of array may not.
Owned<CFArrayRef> arrayOf(const std::vector<Owned<SecTrustedApplicationRef>>& references) {
    static constexpr CFArrayCallBacks callBacks{0, &retainReference, &releaseReference, nullptr, nullptr};
    std::vector<const void*> values;
    std::transform(references.begin(), references.end(), std::back_inserter(values),
                   [](const auto& reference) { return reference.get(); });
    return Owned<CFArrayRef>{
        CFArrayCreate(kCFAllocatorDefault, values.data(), static_cast<CFIndex>(values.size()), &callBacks)};
}

std::string wordsFor(OSStatus status) {
    const Owned<CFStringRef> words{SecCopyErrorMessageString(status, nullptr)};
    return textOf(words.get()).value_or("no reason is given") + " (" + std::to_string(status) + ")";
}

/// The loss of an access list shows only much later, as a prompt of a component of the system's.
void tell(std::string_view what, OSStatus why) {
    if (DebugChannel::isOpen()) {
        DebugChannel::write(std::string{"Keychain: "}.append(what).append(": ").append(wordsFor(why)), "add");
    }
}

/// None for an application that the system knows nothing of.
Owned<SecTrustedApplicationRef> trustedApplication(const char* path) {
    SecTrustedApplicationRef reference = nullptr;
    const auto status = SecTrustedApplicationCreateFromPath(path, &reference);
    if (reference == nullptr) {
        tell((path == nullptr ? "this application" : std::string{path}) + " can't be let at the item", status);
    }
    return Owned<SecTrustedApplicationRef>{reference};
}

struct CreatedAccess {
    OSStatus status = errSecSuccess;
    Owned<SecAccessRef> object;
};

CreatedAccess createdAccess(CFStringRef description, const std::vector<Owned<SecTrustedApplicationRef>>& references) {
    SecAccessRef reference = nullptr;
    const auto status = SecAccessCreate(description, arrayOf(references).get(), &reference);
    return {status, Owned<SecAccessRef>{reference}};
}

/// None when the framework makes none: the item then gets the access that every new item has, its creator's alone.
Owned<SecAccessRef> accessObject(const KeychainAccess& access) {
    const auto& paths = access.trustedApplicationPaths;
    std::vector<Owned<SecTrustedApplicationRef>> references(paths.size());
    auto hasCaller = false;
    for (const auto hasPath : {true, false}) {
        for (std::size_t index = 0; index < paths.size(); ++index) {
            if (paths[index].has_value() == hasPath) {
                references[index] = trustedApplication(paths[index] ? paths[index]->c_str() : nullptr);
                hasCaller = hasCaller || (!hasPath && references[index] != nullptr);
            }
        }
    }
    const auto description = coreFoundationText(access.description);
    if (!description) {
        return nullptr;
    }
    auto created = createdAccess(description.get(), references);
    // A list with a gap is refused as a whole. The others keep their access, unless that would lock its creator out.
    if (!created.object && hasCaller && std::erase(references, nullptr) > 0) {
        created = createdAccess(description.get(), references);
    }
    if (!created.object) {
        tell("the item has no access list, and only this application can read it without a prompt", created.status);
    }
    return std::move(created.object);
}

Owned<CFStringRef> accessibilityNamed(const std::string& name) {
    return name == keychainAccessibleAlways
               ? Owned<CFStringRef>{static_cast<CFStringRef>(CFRetain(kSecAttrAccessibleAlways))}
               : coreFoundationText(name);
}

std::optional<std::string> accessibilityOf(CFTypeRef value) {
    auto text = textOf(value);
    return text == textOf(kSecAttrAccessibleAlways) && text ? keychainAccessibleAlways : std::move(text);
}

KeychainDictionary dictionaryOf(CFDictionaryRef found) {
    const auto value = [&](CFStringRef key) { return CFDictionaryGetValue(found, key); };
    return {.service = textOf(value(kSecAttrService)),
            .account = textOf(value(kSecAttrAccount)),
            .label = textOf(value(kSecAttrLabel)),
            .comment = textOf(value(kSecAttrComment)),
            .data = bytesOf(value(kSecValueData)),
            .persistentReference = bytesOf(value(kSecValuePersistentRef)),
            .accessibility = accessibilityOf(value(kSecAttrAccessible))};
}

/// The user's keychain. Nothing but a translation: what the platform answers is the answer.
class SecurityFrameworkKeychainStore final : public KeychainStore {
public:
    KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override {
        auto arguments = argumentsOf(query);
        arguments.addIf(wanted.limitOne, kSecMatchLimit, kSecMatchLimitOne)
            .addIf(wanted.attributes, kSecReturnAttributes, kCFBooleanTrue)
            .addIf(wanted.data, kSecReturnData, kCFBooleanTrue)
            .addIf(wanted.persistentReference, kSecReturnPersistentRef, kCFBooleanTrue);
        if (arguments.get() == nullptr) {
            return {KeychainStatus::param, {}};
        }
        // Asked for nothing, the platform gives a reference to the item, which goes unused.
        CFTypeRef result = nullptr;
        KeychainAnswer answer{KeychainStatus{SecItemCopyMatching(arguments.get(), &result)}, {}};
        const Owned<CFTypeRef> found{result};
        if (found && CFGetTypeID(found.get()) == CFDictionaryGetTypeID()) {
            answer.value = dictionaryOf(static_cast<CFDictionaryRef>(found.get()));
        } else if (auto bytes = bytesOf(found.get())) {
            answer.value = *std::move(bytes);
        }
        return answer;
    }

    KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override {
        const auto query = argumentsOf(target);
        Arguments attributes;
        attributes.addText(kSecAttrAccount, changes.account)
            .addData(kSecValueData, changes.data)
            .addText(kSecAttrComment, changes.comment);
        if (query.get() == nullptr || attributes.get() == nullptr) {
            return KeychainStatus::param;
        }
        return KeychainStatus{SecItemUpdate(query.get(), attributes.get())};
    }

    KeychainStatus add(const KeychainItem& item) override {
        const auto access = accessObject(item.access);
        Arguments attributes;
        attributes.add(kSecClass, kSecClassGenericPassword)
            .addText(kSecAttrService, item.service)
            .addText(kSecAttrAccount, item.account)
            .addData(kSecValueData, item.data)
            .addText(kSecAttrLabel, item.label)
            .add(kSecAttrAccessible, accessibilityNamed(item.accessibility).get())
            .addIf(access != nullptr, kSecAttrAccess, access.get())
            .addText(kSecAttrComment, item.comment);
        return attributes.get() == nullptr ? KeychainStatus::param
                                           : KeychainStatus{SecItemAdd(attributes.get(), nullptr)};
    }

    KeychainStatus remove(const KeychainQuery& target) override {
        const auto query = argumentsOf(target);
        return query.get() == nullptr ? KeychainStatus::param : KeychainStatus{SecItemDelete(query.get())};
    }

    [[nodiscard]] std::optional<std::string> message(KeychainStatus status) const override {
        const Owned<CFStringRef> text{SecCopyErrorMessageString(static_cast<OSStatus>(status), nullptr)};
        return textOf(text.get());
    }

    // No status and no `unlock` of its own: the system asks the user by itself, within the call that needs the answer.
    KeychainStoreState state() override { return {.name = "keychain"}; }
};

}  // namespace

std::shared_ptr<KeychainStore> makeSecurityFrameworkKeychainStore() {
    return std::make_shared<SecurityFrameworkKeychainStore>();
}

}  // namespace Tarnwick_API::Platform
