// The part of CoreFoundation that the library is written to, declared as on macOS.
#pragma once

#include <cstdint>

using Boolean = unsigned char;
using UInt8 = std::uint8_t;
using SInt32 = std::int32_t;
using UInt32 = std::uint32_t;
using OSStatus = SInt32;
using CFIndex = long;
using CFTypeID = unsigned long;
using CFHashCode = unsigned long;
using CFStringEncoding = UInt32;

using CFTypeRef = const void*;
using CFAllocatorRef = const struct OpaqueAllocator*;
using CFArrayRef = const struct OpaqueArray*;
using CFPropertyListRef = CFTypeRef;
using CFBundleRef = struct OpaqueBundle*;
using CFLocaleRef = const struct OpaqueLocale*;
using CFBooleanRef = const struct OpaqueBoolean*;
using CFDataRef = const struct OpaqueData*;
using CFDictionaryRef = const struct OpaqueDictionary*;
using CFMutableDictionaryRef = struct OpaqueDictionary*;
using CFStringRef = const struct OpaqueString*;
using CFLocaleKey = CFStringRef;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

struct CFArrayCallBacks {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    Boolean (*equal)(const void* one, const void* other);
};

struct CFDictionaryValueCallBacks {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    Boolean (*equal)(const void* one, const void* other);
};

struct CFDictionaryKeyCallBacks {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    Boolean (*equal)(const void* one, const void* other);
    CFHashCode (*hash)(const void* value);
};

extern "C" {

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
inline constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks);

CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

CFBundleRef CFBundleGetMainBundle();
CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle);
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value, CFStringRef table);

extern const CFStringRef kCFPreferencesCurrentApplication;
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);

extern const CFLocaleKey kCFLocaleCountryCode;
extern const CFLocaleKey kCFLocaleLanguageCode;
CFArrayRef CFLocaleCopyPreferredLanguages();
CFLocaleRef CFLocaleCopyCurrent();
CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFLocaleKey key);

CFTypeID CFDataGetTypeID();
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);

CFTypeID CFDictionaryGetTypeID();
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks);
void CFDictionaryAddValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

CFTypeID CFStringGetTypeID();
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex capacity, CFIndex* used);

}  // extern "C"

inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    return {location, length};
}
