#include <Platform/Keychain/File/KeychainFolderLock.hpp>

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

KeychainFolderLock::KeychainFolderLock(const std::filesystem::path& folder, Deadline deadline)
    : folder_{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)} {
    static_cast<void>(take(LOCK_SH, deadline));
}

KeychainFolderLock::~KeychainFolderLock() {
    if (folder_ >= 0) {
        ::close(folder_);
    }
}

bool KeychainFolderLock::becomeExclusive(Deadline deadline) {
    return take(LOCK_EX, deadline);
}

bool KeychainFolderLock::take(int kind, Deadline deadline) const {
    if (folder_ < 0) {
        return true;
    }
    while (::flock(folder_, kind | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return true;  // a file system without such locks
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
}

}  // namespace Tarnwick_API::Platform
