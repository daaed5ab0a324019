#include <Platform/Application/SystemDisplayName.hpp>

#include <Platform/CoreFoundation/CoreFoundationValues.hpp>

#include <SystemConfiguration/SystemConfiguration.h>

namespace Tarnwick_API::Platform {

std::optional<std::string> systemDisplayName() {
    const Owned<CFStringRef> name{SCDynamicStoreCopyComputerName(nullptr, nullptr)};
    return textOf(name.get());
}

}  // namespace Tarnwick_API::Platform
