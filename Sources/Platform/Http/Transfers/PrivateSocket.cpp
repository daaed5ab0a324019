#include <Platform/Http/Transfers/PrivateSocket.hpp>

#include <fcntl.h>
#include <sys/socket.h>

namespace Tarnwick_API::Platform {

int openPrivateSocket(int family, int type, int protocol) noexcept {
#ifdef SOCK_CLOEXEC
    return ::socket(family, type | SOCK_CLOEXEC, protocol);
#else
    const auto socket = ::socket(family, type, protocol);
    if (socket >= 0) {
        ::fcntl(socket, F_SETFD, FD_CLOEXEC);
    }
    return socket;
#endif
}

}  // namespace Tarnwick_API::Platform
