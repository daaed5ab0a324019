#include <Tarnwick_API/Platform/Application/Preferences.hpp>

#include <Platform/Concurrency/ProcessWide.hpp>

namespace Tarnwick_API::Platform {

namespace {

ProcessWideFunction<Preferences::Lookup>& installedLookup() {
    static auto& lookup = ProcessWideFunction<Preferences::Lookup>::immortal();
    return lookup;
}

}  // namespace

std::optional<std::string> Preferences::text(std::string_view key) {
    const auto lookup = installedLookup().get();
    return lookup ? (*lookup)(key) : std::nullopt;
}

void Preferences::setLookup(Lookup lookup) {
    installedLookup().set(std::move(lookup));
}

}  // namespace Tarnwick_API::Platform
