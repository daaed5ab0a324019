#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// What came of one attempt to send a request. The completion of an operation knows only that all attempts have failed
/// (`ResponseError::notReachable`); here is why each of them has.
struct RequestAttempt {
    /// The host of the request's URL, without port: in fallback mode the fixed address.
    std::string host;
    /// 1 for the first attempt of a request, one more for each further one.
    std::int64_t number = 1;
    /// Why the attempt has failed: its kind, and words for developers that hold no header or body.
    ///
    /// An attempt that was not sent, as this computer has no route to the service, has the kind `cannotConnect`. An
    /// answer is none when a host's own session gives it the status 0 (`badAnswer`), or neither error nor response
    /// (`other`; the completion is then never called). None: the service has answered, with whatever status.
    std::optional<Platform::HttpError> failure = std::nullopt;
    /// Whether the request is tried again, after a pause. A failure without another attempt ends the request.
    bool anotherFollows = false;
    /// Where the answer came from; without meaning after a failure.
    Platform::HttpAnswer::Source source = Platform::HttpAnswer::Source::network;
};

}  // namespace Tarnwick_API
