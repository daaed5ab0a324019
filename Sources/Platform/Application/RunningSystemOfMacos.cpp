#include <Platform/Application/RunningSystem.hpp>

#include <array>

#include <sys/sysctl.h>

namespace Tarnwick_API::Platform {

RunningSystem runningSystem() {
    std::array<char, 64> version{};
    std::size_t length = version.size() - 1;
    const auto isKnown = sysctlbyname("kern.osproductversion", version.data(), &length, nullptr, 0) == 0;
    return {"OS X", isKnown ? version.data() : ""};
}

}  // namespace Tarnwick_API::Platform
