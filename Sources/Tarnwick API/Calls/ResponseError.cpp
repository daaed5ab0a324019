#include <Tarnwick_API/Calls/ResponseError.hpp>

#include <Platform/Text/Utf8.hpp>

namespace Tarnwick_API {

ResponseError ResponseError::fromAnswer(std::int64_t status, const std::optional<std::string>& body) {
    switch (status) {
        case 400:
            return badRequest();
        case 401:
            return unauthorized();
        case 403:
            return forbidden();
        case 404:
            return notFound();
        default:
            break;
    }
    if (body && Platform::isValidUtf8(*body)) {
        return genericError(*body);
    }
    return unknownError();
}

std::string_view ResponseError::localizedDescription() const noexcept {
    switch (kind_) {
        case Kind::genericError:
            return "Generic error";
        case Kind::unknownError:
            return "Unknown error";
        case Kind::badRequest:
            return "Request error.";
        case Kind::unauthorized:
            return "The user is not authorized.";
        case Kind::forbidden:
            return "Forbidden.";
        case Kind::notFound:
            return "Not found.";
        case Kind::notReachable:
            break;
    }
    return "API not reachable.";
}

}  // namespace Tarnwick_API
