#include "SessionFixture.hpp"

std::string errorName(const Tarnwick_API::Platform::HttpAnswer& answer) {
    using Kind = Tarnwick_API::Platform::HttpError::Kind;
    if (!answer.error) {
        return "none";
    }
    switch (answer.error->kind) {
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
            return "other";
    }
    return "unknown";
}
