#include <Platform/Http/Transfers/PrivateSocket.hpp>

#include <sys/socket.h>

namespace Tarnwick_API::Platform {

int openPrivateSocket(int family, int type, int protocol) noexcept {
    return ::socket(family, type | SOCK_CLOEXEC, protocol);
}

}  // namespace Tarnwick_API::Platform
