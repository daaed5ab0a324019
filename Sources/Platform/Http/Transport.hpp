#pragma once

#include <Tarnwick_API/Platform/Concurrency/MoveOnlyFunction.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <memory>

namespace Tarnwick_API::Platform {

/// What came of a request.
struct TransportResult {
    /// Its request is the one that was asked for.
    HttpAnswer answer;
    /// The answer is that of another URL, to which the request's own redirected.
    bool isRedirected = false;
    /// False of a body whose end nothing marks, and which can't be seen to be whole: nobody should keep it.
    bool isKnownWhole = true;
};

/// Brings requests to their answers. Dropped, it cancels what it has under way.
class Transport {
public:
    using OnAnswer = MoveOnlyFunction<void(TransportResult)>;

    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default;

    /// Starts `request` and returns at once. `onAnswer` is called exactly once, on a thread of the transport's that it
    /// must not hold up, or inside this call when nothing can be started; only the end of the process leaves it
    /// uncalled. Once `stop` stops, the request is given up, and answered as cancelled. Thread: any.
    virtual void transfer(std::shared_ptr<const HttpRequest> request, OnAnswer onAnswer, StopToken stop) = 0;

    /// See `HttpSession::networkChanged`. Thread: any.
    virtual void networkChanged() = 0;
};

/// The answer to a request that came to none.
[[nodiscard]] HttpAnswer failedAnswer(HttpError error);

/// The same, when the session was dropped, or the request stopped, before.
[[nodiscard]] HttpAnswer cancelledAnswer();

}  // namespace Tarnwick_API::Platform
