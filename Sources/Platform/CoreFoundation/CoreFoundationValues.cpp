#include <Platform/CoreFoundation/CoreFoundationValues.hpp>

namespace Tarnwick_API::Platform {

namespace {

// The framework takes and gives bytes as unsigned characters, which may alias any other.
const UInt8* unsignedBytes(const std::string& text) {
    return reinterpret_cast<const UInt8*>(text.data());
}

bool isOfType(CFTypeRef object, CFTypeID type) {
    return object != nullptr && CFGetTypeID(object) == type;
}

}  // namespace

Owned<CFStringRef> coreFoundationText(const std::string& text) {
    if (text.find('\0') != std::string::npos) {
        return nullptr;
    }
    return Owned<CFStringRef>{CFStringCreateWithBytes(kCFAllocatorDefault, unsignedBytes(text),
                                                      static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false)};
}

Owned<CFDataRef> coreFoundationData(const Bytes& bytes) {
    return Owned<CFDataRef>{
        CFDataCreate(kCFAllocatorDefault, unsignedBytes(bytes), static_cast<CFIndex>(bytes.size()))};
}

std::optional<std::string> textOf(CFTypeRef object) {
    if (!isOfType(object, CFStringGetTypeID())) {
        return std::nullopt;
    }
    auto* const string = static_cast<CFStringRef>(object);
    const auto range = CFRangeMake(0, CFStringGetLength(string));
    CFIndex size = 0;
    // Fewer characters come through when one, half of a pair, has no UTF-8.
    if (CFStringGetBytes(string, range, kCFStringEncodingUTF8, 0, false, nullptr, 0, &size) != range.length) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, range, kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8*>(text.data()), size,
                     &size);
    return text;
}

std::optional<Bytes> bytesOf(CFTypeRef object) {
    if (!isOfType(object, CFDataGetTypeID())) {
        return std::nullopt;
    }
    auto* const data = static_cast<CFDataRef>(object);
    const auto size = static_cast<std::size_t>(CFDataGetLength(data));
    // Empty data may have no address.
    return size == 0 ? Bytes{} : Bytes(reinterpret_cast<const char*>(CFDataGetBytePtr(data)), size);
}

}  // namespace Tarnwick_API::Platform
