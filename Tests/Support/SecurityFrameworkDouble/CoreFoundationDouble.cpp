// Objects stay in the register after their last reference is gone, so that a use too many is seen.

#include "FrameworkObject.hpp"
#include <Platform/Text/Utf8.hpp>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <numeric>
#include <stdexcept>

#include <gtest/gtest.h>

namespace SecurityFrameworkDouble {

namespace {

using Kind = FrameworkObject::Kind;
using Register = std::map<CFTypeRef, std::unique_ptr<FrameworkObject>>;

Register& objects() {
    static auto& all = *std::make_unique<Register>().release();
    return all;
}

}  // namespace

CFTypeRef madeObject(FrameworkObject object) {
    auto made = std::make_unique<FrameworkObject>(std::move(object));
    const auto* const reference = made.get();
    objects().emplace(reference, std::move(made));
    return reference;
}

FrameworkObject& objectOf(CFTypeRef reference) {
    const auto found = objects().find(reference);
    if (found == objects().end()) {
        throw std::invalid_argument{"no object of the framework"};
    }
    EXPECT_GT(found->second->references, 0) << "used after its release: " << found->second->text;
    return *found->second;
}

const FrameworkObject& objectOf(CFTypeRef reference, Kind kind) {
    const auto& object = objectOf(reference);
    EXPECT_EQ(object.kind, kind) << "the function takes objects of another kind";
    return object;
}

std::string shown(CFTypeRef reference) {
    if (reference == nullptr) {
        return "missing";
    }
    const auto& object = objectOf(reference);
    if (object.kind == Kind::dictionary) {
        std::string text;
        for (const auto& [key, value] : object.members) {
            text += (text.empty() ? "" : " ") + shown(key) + "=" + shown(value);
        }
        return "{" + text + "}";
    }
    if (object.kind == Kind::array) {
        std::string text;
        for (const auto* const element : object.elements) {
            text += (text.empty() ? "" : " ") + shown(element);
        }
        return "[" + text + "]";
    }
    if (object.kind == Kind::data) {
        return "<" + object.text + ">";
    }
    return object.kind == Kind::string && !object.isConstant ? "'" + object.text + "'" : object.text;
}

std::vector<std::string> takeLeftObjects() {
    std::vector<std::string> left;
    for (const auto& [reference, object] : objects()) {
        if (!object->isConstant && object->references > 0) {
            left.push_back(shown(reference));
        }
    }
    std::erase_if(objects(), [](const auto& entry) { return !entry.second->isConstant; });
    return left;
}

}  // namespace SecurityFrameworkDouble

using SecurityFrameworkDouble::FrameworkObject;
using SecurityFrameworkDouble::madeObject;
using SecurityFrameworkDouble::objectOf;
using Kind = FrameworkObject::Kind;

namespace {

bool areEqual(CFTypeRef one, CFTypeRef other) {
    const auto& left = objectOf(one);
    const auto& right = objectOf(other);
    return left.kind == right.kind && left.text == right.text;
}

CFTypeID typeId(Kind kind) {
    return static_cast<CFTypeID>(kind);
}

std::string textFrom(const UInt8* bytes, CFIndex count) {
    return count == 0 ? std::string{}
                      : std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
}

const void* retain(CFAllocatorRef /*allocator*/, const void* value) {
    return CFRetain(value);
}

void release(CFAllocatorRef /*allocator*/, const void* value) {
    CFRelease(value);
}

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue =
    madeObject<CFBooleanRef>({.kind = Kind::boolean, .text = "true", .isConstant = true});
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{0, &retain, &release, nullptr, nullptr, nullptr};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{0, &retain, &release, nullptr, nullptr};

CFTypeRef CFRetain(CFTypeRef object) {
    ++objectOf(object).references;
    return object;
}

void CFRelease(CFTypeRef object) {
    auto& released = objectOf(object);
    if (released.isConstant || --released.references > 0) {
        return;
    }
    for (const auto& [key, value] : released.members) {
        CFRelease(key);
        CFRelease(value);
    }
    for (const auto* const element : released.elements) {
        released.callBacks.release(nullptr, element);
    }
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    return typeId(objectOf(object).kind);
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
    FrameworkObject array{.kind = Kind::array, .callBacks = *callBacks};
    std::transform(values, values + count, std::back_inserter(array.elements),
                   [&](const void* value) { return callBacks->retain(allocator, value); });
    return madeObject<CFArrayRef>(std::move(array));
}

CFTypeID CFDataGetTypeID() {
    return typeId(Kind::data);
}

CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length) {
    return madeObject<CFDataRef>({.kind = Kind::data, .text = textFrom(bytes, length)});
}

CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(objectOf(data, Kind::data).text.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    const auto& bytes = objectOf(data, Kind::data).text;
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
    return madeObject<CFMutableDictionaryRef>({.kind = Kind::dictionary});
}

void CFDictionaryAddValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
    if (CFDictionaryGetValue(dictionary, key) == nullptr) {
        objectOf(dictionary).members.emplace_back(CFRetain(key), CFRetain(value));
    }
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto& members = objectOf(dictionary, Kind::dictionary).members;
    const auto member =
        std::find_if(members.begin(), members.end(), [&](const auto& each) { return areEqual(each.first, key); });
    return member == members.end() ? nullptr : member->second;
}

CFTypeID CFStringGetTypeID() {
    return typeId(Kind::string);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
    EXPECT_EQ(encoding, kCFStringEncodingUTF8);
    EXPECT_FALSE(isExternalRepresentation) << "a byte order mark would be cut off";
    auto text = textFrom(bytes, count);
    return Tarnwick_API::Platform::isValidUtf8(text)
               ? madeObject<CFStringRef>({.kind = Kind::string, .text = std::move(text)})
               : nullptr;
}

CFIndex CFStringGetLength(CFStringRef string) {
    const auto& text = objectOf(string, Kind::string).text;
    return std::accumulate(text.begin(), text.end(), CFIndex{0}, [](CFIndex length, unsigned char byte) {
        const auto isContinuation = (byte & 0xC0U) == 0x80;
        return length + (isContinuation ? 0 : byte >= 0xF0 ? 2 : 1);
    });
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex capacity, CFIndex* used) {
    const auto& text = objectOf(string, Kind::string).text;
    EXPECT_EQ(encoding, kCFStringEncodingUTF8);
    EXPECT_EQ(lossByte, 0);
    EXPECT_FALSE(isExternalRepresentation);
    EXPECT_EQ(range.location, 0);
    EXPECT_EQ(range.length, CFStringGetLength(string));
    const auto size = static_cast<CFIndex>(text.size());
    if (!Tarnwick_API::Platform::isValidUtf8(text) || (buffer != nullptr && capacity < size)) {
        *used = 0;
        return 0;
    }
    if (buffer != nullptr) {
        std::copy(text.begin(), text.end(), buffer);
    }
    *used = size;
    return range.length;
}
