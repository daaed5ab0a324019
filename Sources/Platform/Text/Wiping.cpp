#include <Platform/Text/Wiping.hpp>

namespace Tarnwick_API::Platform {

void wipe(std::string& text) noexcept {
    text.resize(text.capacity());
    wipe(text.data(), text.size());
    text.clear();
}

}  // namespace Tarnwick_API::Platform
