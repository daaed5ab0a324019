#include <Tarnwick_API/Platform/Application/HostName.hpp>

#include <Platform/Application/HostLookup.hpp>
#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Application/SystemHostName.hpp>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedHostNameLookup{&ProcessValues::hostNameLookup};

}  // namespace

std::optional<std::string> HostName::localized() {
    const auto lookup = installedHostNameLookup.get();
    return lookup ? askHost("HostName::localized", *lookup) : systemHostName();
}

void HostName::setLookup(std::function<std::optional<std::string>()> lookup) {
    installedHostNameLookup.set(std::move(lookup));
}

}  // namespace Tarnwick_API::Platform
