#include <Platform/Keychain/File/ModificationTime.hpp>

namespace Tarnwick_API::Platform {

timespec modificationTime(const struct stat& file) noexcept {
    return file.st_mtim;
}

}  // namespace Tarnwick_API::Platform
