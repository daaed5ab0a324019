#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

namespace Tarnwick_API::Platform {

const char* name(HttpError::Kind kind) noexcept {
    using Kind = HttpError::Kind;
    switch (kind) {
        case Kind::encoding:
            return "encoding";
        case Kind::unresolvedHost:
            return "unresolvedHost";
        case Kind::cannotConnect:
            return "cannotConnect";
        case Kind::timedOut:
            return "timedOut";
        case Kind::connectionLost:
            return "connectionLost";
        case Kind::certificate:
            return "certificate";
        case Kind::tls:
            return "tls";
        case Kind::badAnswer:
            return "badAnswer";
        case Kind::tooLarge:
            return "tooLarge";
        case Kind::tooManyRedirects:
            return "tooManyRedirects";
        case Kind::cancelled:
            return "cancelled";
        case Kind::other:
            break;
    }
    return "other";
}

}  // namespace Tarnwick_API::Platform
