#include <Tarnwick_API/Platform/Application/Preferences.hpp>

#include <Platform/Application/HostLookup.hpp>
#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Application/SystemPreferences.hpp>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedPreferencesLookup{&ProcessValues::preferencesLookup};

}  // namespace

std::optional<std::string> Preferences::text(std::string_view key) {
    const auto lookup = installedPreferencesLookup.get();
    return lookup ? askHost("Preferences::text", [&] { return (*lookup)(key); }) : systemPreference(key);
}

void Preferences::setLookup(Lookup lookup) {
    installedPreferencesLookup.set(std::move(lookup));
}

}  // namespace Tarnwick_API::Platform
