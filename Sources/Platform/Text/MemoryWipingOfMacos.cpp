#define __STDC_WANT_LIB_EXT1__ 1  // NOLINT(bugprone-reserved-identifier): asks for memset_s

#include <Platform/Text/Wiping.hpp>

#include <string.h>  // NOLINT(modernize-deprecated-headers): what is asked for isn't in <cstring>

namespace Tarnwick_API::Platform {

void wipe(void* memory, std::size_t size) noexcept {
    if (size != 0) {
        memset_s(memory, size, 0, size);
    }
}

}  // namespace Tarnwick_API::Platform
