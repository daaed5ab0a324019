#include <Platform/Application/SystemPreferences.hpp>

#include <Platform/CoreFoundation/CoreFoundationValues.hpp>

#include <CoreFoundation/CoreFoundation.h>

namespace Tarnwick_API::Platform {

std::optional<std::string> systemPreference(std::string_view key) {
    const auto name = coreFoundationText(std::string{key});
    if (!name) {
        return std::nullopt;
    }
    const Owned<CFPropertyListRef> value{CFPreferencesCopyAppValue(name.get(), kCFPreferencesCurrentApplication)};
    return textOf(value.get());
}

}  // namespace Tarnwick_API::Platform
