#include <Tarnwick_API/Calls/ResponseError.hpp>

#include <Tarnwick_API/Calls/HttpStatus.hpp>

#include <Platform/Text/Utf8.hpp>

namespace Tarnwick_API {

ResponseError ResponseError::fromAnswer(std::int64_t status, const std::optional<std::string>& body) {
    const auto named = fromRawValue<HttpStatus>(status);
    if (named == HttpStatus::badRequest) {
        return badRequest();
    }
    if (named == HttpStatus::unauthorized) {
        return unauthorized();
    }
    if (named == HttpStatus::forbidden) {
        return forbidden();
    }
    if (named == HttpStatus::notFound) {
        return notFound();
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
