#include <Platform/Application/SystemBundle.hpp>

namespace Tarnwick_API::Platform {

Bundle systemBundle() {
    return {};
}

}  // namespace Tarnwick_API::Platform
