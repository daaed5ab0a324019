#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>

namespace Tarnwick_API::Platform {

struct CoreFoundationRelease {
    void operator()(CFTypeRef object) const noexcept { CFRelease(object); }
};

/// Owns one reference of an object that a function with "Create" or "Copy" in its name has given, or none.
template <class Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, CoreFoundationRelease>;

/// None for what is no UTF-8, and for text with a NUL: the keychain's own C strings end there, so that the text would
/// stand for another item.
[[nodiscard]] Owned<CFStringRef> coreFoundationText(const std::string& text);
[[nodiscard]] Owned<CFDataRef> coreFoundationData(const Bytes& bytes);

/// None for what is missing or no text, also for text that UTF-8 can't say.
[[nodiscard]] std::optional<std::string> textOf(CFTypeRef object);
/// None for what is missing or no data.
[[nodiscard]] std::optional<Bytes> bytesOf(CFTypeRef object);

}  // namespace Tarnwick_API::Platform
