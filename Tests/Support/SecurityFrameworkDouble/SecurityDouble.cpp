#include "FrameworkObject.hpp"
#include "SecurityFrameworkDouble.hpp"
#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

#include <gtest/gtest.h>

namespace {

using Kind = SecurityFrameworkDouble::FrameworkObject::Kind;
using SecurityFrameworkDouble::madeObject;
using SecurityFrameworkDouble::objectOf;
using SecurityFrameworkDouble::shown;
using Tarnwick_API::Platform::StoredKeychainItem;

struct Keychain {
    std::vector<StoredKeychainItem> items;  // the oldest first
    std::vector<std::string> calls;
    std::map<std::string, std::deque<OSStatus>> failures;
    CFTypeRef answer = nullptr;
};

Keychain& keychain() {
    static auto& only = *std::make_unique<Keychain>().release();
    return only;
}

/// Writes a call down. Its status when it is to fail.
OSStatus record(const std::string& function, const std::string& arguments) {
    keychain().calls.push_back(function + " " + arguments);
    auto& planned = keychain().failures[function];
    if (planned.empty()) {
        return errSecSuccess;
    }
    const auto status = planned.front();
    planned.pop_front();
    return status;
}

CFStringRef constant(const char* name) {
    return madeObject<CFStringRef>({.kind = Kind::string, .text = name, .isConstant = true});
}

std::optional<std::string> member(CFDictionaryRef dictionary, CFStringRef key, Kind kind = Kind::string) {
    const auto* const value = CFDictionaryGetValue(dictionary, key);
    return value == nullptr ? std::nullopt : std::optional{objectOf(value, kind).text};
}

bool isAsked(CFDictionaryRef query, CFStringRef key) {
    return CFDictionaryGetValue(query, key) == kCFBooleanTrue;
}

std::vector<StoredKeychainItem>::iterator firstMatch(const std::optional<std::string>& service,
                                                     const std::optional<std::string>& account) {
    auto& items = keychain().items;
    return std::find_if(items.begin(), items.end(), [&](const auto& item) {
        return Tarnwick_API::Platform::matches(item, {service, account});
    });
}

std::vector<StoredKeychainItem>::iterator firstMatch(CFDictionaryRef query) {
    EXPECT_EQ(CFDictionaryGetValue(query, kSecClass), kSecClassGenericPassword);
    return firstMatch(member(query, kSecAttrService), member(query, kSecAttrAccount));
}

CFStringRef text(const std::string& content) {
    return madeObject<CFStringRef>({.kind = Kind::string, .text = content});
}

CFDataRef data(const std::string& content) {
    return madeObject<CFDataRef>({.kind = Kind::data, .text = content});
}

void give(CFMutableDictionaryRef dictionary, CFStringRef key, CFTypeRef value) {
    CFDictionaryAddValue(dictionary, key, value);
    CFRelease(value);
}

CFTypeRef shownAsAsked(const StoredKeychainItem& item, CFDictionaryRef query) {
    const auto attributes = isAsked(query, kSecReturnAttributes);
    const auto secret = isAsked(query, kSecReturnData);
    const auto reference = isAsked(query, kSecReturnPersistentRef);
    if (!attributes && !secret && !reference) {
        return madeObject({.kind = Kind::item, .text = "item"});
    }
    if (!attributes && secret != reference) {
        return reference ? data(item.persistentReference) : item.data ? data(*item.data) : nullptr;
    }
    auto* const dictionary = madeObject<CFMutableDictionaryRef>({.kind = Kind::dictionary});
    if (attributes) {
        give(dictionary, kSecAttrService, text(item.service));
        give(dictionary, kSecAttrAccount, text(item.account));
        give(dictionary, kSecAttrLabel, text(item.label));
        give(dictionary, kSecAttrComment, text(item.comment));
    }
    if (secret && item.data) {
        give(dictionary, kSecValueData, data(*item.data));
    }
    if (reference) {
        give(dictionary, kSecValuePersistentRef, data(item.persistentReference));
    }
    return dictionary;
}

}  // namespace

namespace SecurityFrameworkDouble {

std::shared_ptr<Tarnwick_API::Platform::KeychainStore> makeKeychainStore() {
    keychain() = {};
    auto store = Tarnwick_API::Platform::makeSecurityFrameworkKeychainStore();
    auto* const address = store.get();
    return {address, [store = std::move(store)](auto* /*address*/) mutable {
                store = nullptr;
                EXPECT_EQ(takeLeftObjects(), std::vector<std::string>{}) << "objects that nobody releases";
            }};
}

std::vector<std::string> takeCalls() {
    return std::exchange(keychain().calls, {});
}

void fail(const std::string& function, const std::vector<OSStatus>& statuses) {
    keychain().failures[function] = {statuses.begin(), statuses.end()};
}

void answerNext(CFTypeRef object) {
    keychain().answer = object;
}

}  // namespace SecurityFrameworkDouble

const CFStringRef kSecClass = constant("kSecClass");
const CFStringRef kSecClassGenericPassword = constant("kSecClassGenericPassword");
const CFStringRef kSecAttrAccess = constant("kSecAttrAccess");
const CFStringRef kSecAttrAccessible = constant("kSecAttrAccessible");
const CFStringRef kSecAttrAccessibleAlways = constant("kSecAttrAccessibleAlways");
const CFStringRef kSecAttrAccount = constant("kSecAttrAccount");
const CFStringRef kSecAttrComment = constant("kSecAttrComment");
const CFStringRef kSecAttrLabel = constant("kSecAttrLabel");
const CFStringRef kSecAttrService = constant("kSecAttrService");
const CFStringRef kSecMatchLimit = constant("kSecMatchLimit");
const CFStringRef kSecMatchLimitOne = constant("kSecMatchLimitOne");
const CFStringRef kSecReturnAttributes = constant("kSecReturnAttributes");
const CFStringRef kSecReturnData = constant("kSecReturnData");
const CFStringRef kSecReturnPersistentRef = constant("kSecReturnPersistentRef");
const CFStringRef kSecValueData = constant("kSecValueData");
const CFStringRef kSecValuePersistentRef = constant("kSecValuePersistentRef");

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    if (const auto status = record("SecItemCopyMatching", shown(query)); status != errSecSuccess) {
        return status;
    }
    if (auto* const answer = std::exchange(keychain().answer, nullptr); answer != nullptr) {
        *result = answer;
        return errSecSuccess;
    }
    const auto found = firstMatch(query);
    if (found == keychain().items.end()) {
        return errSecItemNotFound;
    }
    *result = shownAsAsked(*found, query);
    return errSecSuccess;
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result) {
    EXPECT_EQ(result, nullptr) << "nobody reads it";
    if (const auto status = record("SecItemAdd", shown(attributes)); status != errSecSuccess) {
        return status;
    }
    if (firstMatch(attributes) != keychain().items.end()) {
        return errSecDuplicateItem;
    }
    const auto given = [&](CFStringRef key) { return member(attributes, key).value_or(""); };
    keychain().items.push_back({given(kSecAttrService), given(kSecAttrAccount), given(kSecAttrLabel),
                                given(kSecAttrComment), member(attributes, kSecValueData, Kind::data),
                                Tarnwick_API::Platform::freshPersistentReference()});
    return errSecSuccess;
}

OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate) {
    if (const auto status = record("SecItemUpdate", shown(query) + " " + shown(attributesToUpdate));
        status != errSecSuccess) {
        return status;
    }
    const auto item = firstMatch(query);
    if (item == keychain().items.end()) {
        return errSecItemNotFound;
    }
    const auto account = member(attributesToUpdate, kSecAttrAccount).value_or(item->account);
    const auto holder = firstMatch(item->service, account);
    if (holder != keychain().items.end() && holder != item) {
        return errSecDuplicateItem;
    }
    item->account = account;
    item->comment = member(attributesToUpdate, kSecAttrComment).value_or(item->comment);
    if (auto secret = member(attributesToUpdate, kSecValueData, Kind::data)) {
        item->data = std::move(secret);
    }
    return errSecSuccess;
}

OSStatus SecItemDelete(CFDictionaryRef query) {
    if (const auto status = record("SecItemDelete", shown(query)); status != errSecSuccess) {
        return status;
    }
    if (firstMatch(query) == keychain().items.end()) {
        return errSecItemNotFound;
    }
    for (auto item = firstMatch(query); item != keychain().items.end(); item = firstMatch(query)) {
        keychain().items.erase(item);
    }
    return errSecSuccess;
}

OSStatus SecAccessCreate(CFStringRef descriptor, CFArrayRef trustedlist, SecAccessRef* accessRef) {
    const auto status = record("SecAccessCreate", shown(descriptor) + " " + shown(trustedlist));
    if (status == errSecSuccess) {
        *accessRef = madeObject<SecAccessRef>({.kind = Kind::access, .text = "access"});
    }
    return status;
}

OSStatus SecTrustedApplicationCreateFromPath(const char* path, SecTrustedApplicationRef* app) {
    const std::string name = path == nullptr ? "self" : path;
    const auto status = record("SecTrustedApplicationCreateFromPath", name);
    if (status == errSecSuccess) {
        *app = madeObject<SecTrustedApplicationRef>({.kind = Kind::trustedApplication, .text = name});
    }
    return status;
}

CFStringRef SecCopyErrorMessageString(OSStatus status, void* reserved) {
    EXPECT_EQ(reserved, nullptr);
    if (record("SecCopyErrorMessageString", std::to_string(status)) != errSecSuccess) {
        return nullptr;
    }
    // The library's own words are the platform's.
    const auto words =
        Tarnwick_API::Platform::makeMemoryKeychainStore()->message(Tarnwick_API::Platform::KeychainStatus{status});
    return words ? text(*words) : nullptr;
}
