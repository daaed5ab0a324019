// Objects stay after their last reference is gone, so that a use too many is seen.

#include "AppleFrameworksDouble.hpp"
#include <Platform/Text/Utf8.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

#include <gtest/gtest.h>

namespace AppleFrameworksDouble {

namespace {

using Kind = Object::Kind;

void releasePart(CFAllocatorRef /*allocator*/, const void* part) {
    CFRelease(part);
}

}  // namespace

std::list<Object>& objects() {
    static std::list<Object> all;
    return all;
}

CFTypeRef made(Object object) {
    return &objects().emplace_back(std::move(object));
}

CFStringRef constant(const char* name) {
    return static_cast<CFStringRef>(made({.kind = Kind::string, .text = name, .isConstant = true}));
}

CFTypeRef text(const std::string& content) {
    return made({.kind = Kind::string, .text = content});
}

CFTypeRef data(const std::string& content) {
    return made({.kind = Kind::data, .text = content});
}

CFTypeRef dictionary(const std::vector<CFTypeRef>& keysAndValues) {
    return made({.kind = Kind::dictionary, .parts = keysAndValues, .release = &releasePart});
}

CFTypeRef array(const std::vector<CFTypeRef>& elements) {
    return made({.kind = Kind::array, .parts = elements, .release = &releasePart});
}

Object& objectOf(CFTypeRef reference) {
    auto& object = *static_cast<Object*>(const_cast<void*>(reference));
    EXPECT_GT(object.references, 0) << "used after its release: " << object.text;
    return object;
}

std::string shown(CFTypeRef reference) {
    if (reference == nullptr) {
        return "missing";
    }
    const auto& object = objectOf(reference);
    const auto isDictionary = object.kind == Kind::dictionary;
    std::string text;
    for (std::size_t index = 0; index < object.parts.size(); ++index) {
        text += index == 0 ? "" : isDictionary && index % 2 == 1 ? "=" : " ";
        text += shown(object.parts[index]);
    }
    switch (object.kind) {
        case Kind::dictionary:
            return "{" + text + "}";
        case Kind::array:
            return "[" + text + "]";
        case Kind::data:
            return "<" + object.text + ">";
        default:
            return object.kind == Kind::string && !object.isConstant ? "'" + object.text + "'" : object.text;
    }
}

}  // namespace AppleFrameworksDouble

using AppleFrameworksDouble::made;
using AppleFrameworksDouble::Object;
using AppleFrameworksDouble::objectOf;
using AppleFrameworksDouble::shown;
using Kind = Object::Kind;

namespace {

CFTypeID typeId(Kind kind) {
    return static_cast<CFTypeID>(kind);
}

/// The object, which must be of the kind that the function takes.
Object& objectOfKind(Kind kind, CFTypeRef reference) {
    auto& object = objectOf(reference);
    EXPECT_EQ(typeId(object.kind), typeId(kind));
    return object;
}

std::string textFrom(const UInt8* bytes, CFIndex count) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)};
}

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = static_cast<CFBooleanRef>(made({.text = "true", .isConstant = true}));
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeRef CFRetain(CFTypeRef object) {
    ++objectOf(object).references;
    return object;
}

void CFRelease(CFTypeRef object) {
    auto& released = objectOf(object);
    if (!released.isConstant && --released.references == 0) {
        for (const auto* const part : released.parts) {
            released.release(nullptr, part);
        }
    }
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    return typeId(objectOf(object).kind);
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
    Object array{
        .kind = Kind::array, .parts = std::vector<CFTypeRef>(values, values + count), .release = callBacks->release};
    for (const auto* const value : array.parts) {
        callBacks->retain(allocator, value);
    }
    return static_cast<CFArrayRef>(made(std::move(array)));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(objectOfKind(Kind::array, array).parts.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return objectOfKind(Kind::array, array).parts.at(static_cast<std::size_t>(index));
}

CFTypeID CFDataGetTypeID() {
    return typeId(Kind::data);
}

CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length) {
    return static_cast<CFDataRef>(AppleFrameworksDouble::data(textFrom(bytes, length)));
}

CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(objectOfKind(Kind::data, data).text.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    const auto& bytes = objectOfKind(Kind::data, data).text;
    return bytes.empty() ? nullptr : reinterpret_cast<const UInt8*>(bytes.data());
}

CFTypeID CFDictionaryGetTypeID() {
    return typeId(Kind::dictionary);
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef /*allocator*/, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
    EXPECT_EQ(capacity, 0) << "other capacities are limits";
    EXPECT_EQ(keyCallBacks, &kCFTypeDictionaryKeyCallBacks) << "the dictionary would not own its keys";
    EXPECT_EQ(valueCallBacks, &kCFTypeDictionaryValueCallBacks) << "the dictionary would not own its values";
    return static_cast<CFMutableDictionaryRef>(const_cast<void*>(AppleFrameworksDouble::dictionary({})));
}

void CFDictionaryAddValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
    auto& parts = objectOfKind(Kind::dictionary, dictionary).parts;
    parts.insert(parts.end(), {CFRetain(key), CFRetain(value)});
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto& parts = objectOfKind(Kind::dictionary, dictionary).parts;
    for (std::size_t index = 0; index < parts.size(); index += 2) {
        if (parts[index] == key || (objectOf(key).kind == Kind::string && shown(parts[index]) == shown(key))) {
            return parts[index + 1];
        }
    }
    return nullptr;
}

CFTypeID CFStringGetTypeID() {
    return typeId(Kind::string);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
    EXPECT_EQ(encoding, kCFStringEncodingUTF8);
    EXPECT_FALSE(isExternalRepresentation) << "a byte order mark would be cut off";
    const auto text = textFrom(bytes, count);
    return Tarnwick_API::Platform::isValidUtf8(text) ? static_cast<CFStringRef>(AppleFrameworksDouble::text(text))
                                                     : nullptr;
}

CFIndex CFStringGetLength(CFStringRef string) {
    const auto& text = objectOfKind(Kind::string, string).text;
    return std::count_if(text.begin(), text.end(), [](unsigned char byte) { return (byte & 0xC0U) != 0x80; });
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex capacity, CFIndex* used) {
    const auto& text = objectOfKind(Kind::string, string).text;
    EXPECT_EQ(encoding, kCFStringEncodingUTF8);
    EXPECT_EQ(lossByte, 0);
    EXPECT_FALSE(isExternalRepresentation);
    EXPECT_EQ(range.location, 0);
    EXPECT_EQ(range.length, CFStringGetLength(string));
    *used = static_cast<CFIndex>(text.size());
    if (buffer != nullptr) {
        EXPECT_EQ(capacity, *used);
        std::copy_n(text.begin(), std::min(capacity, *used), buffer);
    }
    return Tarnwick_API::Platform::isValidUtf8(text) ? range.length : 0;
}
