// The part of the Security framework that the library is written to, declared as on macOS.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

using SecAccessRef = struct OpaqueSecAccessRef*;
using SecTrustedApplicationRef = struct OpaqueSecTrustedApplicationRef*;

inline constexpr OSStatus errSecSuccess = 0;
inline constexpr OSStatus errSecParam = -50;
inline constexpr OSStatus errSecDuplicateItem = -25299;
inline constexpr OSStatus errSecItemNotFound = -25300;

extern "C" {

extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecAttrAccess;
extern const CFStringRef kSecAttrAccessible;
extern const CFStringRef kSecAttrAccessibleAlways;
extern const CFStringRef kSecAttrAccount;
extern const CFStringRef kSecAttrComment;
extern const CFStringRef kSecAttrLabel;
extern const CFStringRef kSecAttrService;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;
extern const CFStringRef kSecReturnAttributes;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecReturnPersistentRef;
extern const CFStringRef kSecValueData;
extern const CFStringRef kSecValuePersistentRef;

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result);
OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate);
OSStatus SecItemDelete(CFDictionaryRef query);

[[deprecated]] OSStatus SecAccessCreate(CFStringRef descriptor, CFArrayRef trustedlist, SecAccessRef* accessRef);
[[deprecated]] OSStatus SecTrustedApplicationCreateFromPath(const char* path, SecTrustedApplicationRef* app);

CFStringRef SecCopyErrorMessageString(OSStatus status, void* reserved);

}  // extern "C"
