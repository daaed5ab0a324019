#include <Tarnwick_API/Platform/Application/HostName.hpp>

#include <Platform/Application/SystemHostName.hpp>
#include <Platform/Concurrency/ProcessWide.hpp>

namespace Tarnwick_API::Platform {

namespace {

using Lookup = std::function<std::optional<std::string>()>;

ProcessWideFunction<Lookup>& installedLookup() {
    static auto& lookup = ProcessWideFunction<Lookup>::immortal();
    return lookup;
}

}  // namespace

std::optional<std::string> HostName::localized() {
    const auto lookup = installedLookup().get();
    return lookup ? (*lookup)() : systemHostName();
}

void HostName::setLookup(std::function<std::optional<std::string>()> lookup) {
    installedLookup().set(std::move(lookup));
}

}  // namespace Tarnwick_API::Platform
