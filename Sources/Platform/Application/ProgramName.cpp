#include <Platform/Application/ApplicationName.hpp>

#include <cerrno>

namespace Tarnwick_API::Platform {

std::string programName() {
    return program_invocation_short_name;
}

}  // namespace Tarnwick_API::Platform
