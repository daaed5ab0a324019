#include <Platform/Text/Wiping.hpp>

#include <cstring>

namespace Tarnwick_API::Platform {

void wipe(void* memory, std::size_t size) noexcept {
    if (size == 0) {
        return;
    }
#ifdef __APPLE__
    memset_s(memory, size, 0, size);
#else
    explicit_bzero(memory, size);
#endif
}

void wipe(std::string& text) noexcept {
    text.resize(text.capacity());
    wipe(text.data(), text.size());
    text.clear();
}

}  // namespace Tarnwick_API::Platform
