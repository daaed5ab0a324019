#include <Platform/Application/RunningSystem.hpp>

#include <sys/utsname.h>

namespace Tarnwick_API::Platform {

RunningSystem runningSystem() {
    utsname names{};
    uname(&names);
    return {names.sysname, names.release};
}

}  // namespace Tarnwick_API::Platform
