#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <functional>
#include <memory>

namespace Tarnwick_API::Platform {

/// What came of a request.
struct TransportResult {
    /// Without its request, which whoever asked has.
    HttpAnswer answer;
    /// The answer is that of another URL, to which the request's own redirected.
    bool isRedirected = false;
    /// False of a body whose end nothing marks, and which can't be seen to be whole: nobody should keep it.
    bool isKnownWhole = true;
};

/// Brings requests to their answers. Dropped, it cancels what it has under way.
class Transport {
public:
    using OnAnswer = std::function<void(TransportResult)>;

    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default;

    /// Starts `request` and returns at once. `onAnswer` is called exactly once, on a thread of the transport's that it
    /// must not hold up, or inside this call when nothing can be started; only the end of the process leaves it
    /// uncalled. It is moved to where it is called, never copied. Once `stop` stops, the request is given up, and
    /// answered as cancelled. Thread: any.
    virtual void transfer(std::shared_ptr<const HttpRequest> request, OnAnswer onAnswer, StopToken stop) = 0;

    /// See `HttpSession::networkChanged`. Thread: any.
    virtual void networkChanged() = 0;
};

/// The answer to a request that came to none.
[[nodiscard]] HttpAnswer failedAnswer(HttpError error);

/// The same, when the session was dropped, or the request stopped, before.
[[nodiscard]] HttpAnswer cancelledAnswer();

}  // namespace Tarnwick_API::Platform
