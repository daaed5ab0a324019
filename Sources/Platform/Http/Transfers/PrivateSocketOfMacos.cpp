#include <Platform/Http/Transfers/PrivateSocket.hpp>

#include <fcntl.h>
#include <sys/socket.h>

namespace Tarnwick_API::Platform {

int openPrivateSocket(int family, int type, int protocol) noexcept {
    const auto socket = ::socket(family, type, protocol);
    if (socket >= 0) {
        ::fcntl(socket, F_SETFD, FD_CLOEXEC);
        // The system sends SIGPIPE to the process, not to the thread that writes, so that blocking it there is not
        // enough.
        const int isOn = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &isOn, sizeof isOn);
    }
    return socket;
}

}  // namespace Tarnwick_API::Platform
