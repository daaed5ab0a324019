#include <Platform/Text/Wiping.hpp>

#include <cstring>

namespace Tarnwick_API::Platform {

void wipe(void* memory, std::size_t size) noexcept {
    if (size != 0) {
        explicit_bzero(memory, size);
    }
}

}  // namespace Tarnwick_API::Platform
