#include <Platform/Application/ApplicationName.hpp>

#include <cstdlib>

namespace Tarnwick_API::Platform {

std::string programName() {
    const char* const name = ::getprogname();
    return name == nullptr ? "" : name;
}

}  // namespace Tarnwick_API::Platform
