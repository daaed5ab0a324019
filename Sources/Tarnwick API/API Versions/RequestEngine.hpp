#pragma once

#include <Tarnwick_API/Calls/ApiResult.hpp>
#include <Tarnwick_API/Facade/ApiCommunicateable.hpp>
#include <Tarnwick_API/Facade/AttemptObservers.hpp>
#include <Tarnwick_API/Facade/RetrySpread.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <cstdint>
#include <functional>
#include <memory>

#include "PreparedRequest.hpp"

namespace Tarnwick_API {

/// Sends requests for a backend: asks whether the service can be reached, names the API host, writes the exchange to
/// the log, tells observers what became of each attempt, tries a failed transfer again after a growing pause, and tells
/// from the status how the request ended.
///
/// Session and host are asked for anew at each attempt. Of one request with all its attempts everything lives in a
/// chain, which keeps the backend alive until it has ended: with an answer, when its attempts are used up, or when the
/// token of the `StoppableScope` in which it began stops. An attempt for which a host's session throws has failed, as
/// one whose transfer fails.
class RequestEngine : public std::enable_shared_from_this<RequestEngine> {
public:
    using SessionLookup = std::function<std::shared_ptr<Platform::HttpSession>()>;

    /// `retrySpread`, `observers`: may be none.
    RequestEngine(SessionLookup session, std::int64_t maxRetries, std::shared_ptr<const RetrySpread> retrySpread,
                  std::shared_ptr<const AttemptObservers> observers);

    /// Sends `request` for `owner`; further as `ApiVersion1::sendRequest`.
    void send(std::shared_ptr<const ApiCommunicateable> owner, std::shared_ptr<const PreparedRequest> request,
              std::int64_t retryCount, RequestCompletion onCompletion) const;

private:
    struct Chain;
    using SharedChain = std::shared_ptr<Chain>;

    static void attempt(const SharedChain& chain, std::int64_t retryCount, AttemptObservers::Teller teller);
    /// False when the session says that the target can't be reached.
    static bool start(const SharedChain& chain, std::int64_t retryCount);
    static void receive(const SharedChain& chain, std::int64_t retryCount, Platform::HttpAnswer&& answer);
    static void goOn(const SharedChain& chain, std::int64_t retryCount, Platform::HttpAnswer&& answer);
    static void retryOrGiveUp(const SharedChain& chain, std::int64_t retryCount);

    SessionLookup session_;
    std::int64_t maxRetries_;
    std::shared_ptr<const RetrySpread> retrySpread_;
    std::shared_ptr<const AttemptObservers> observers_;
};

}  // namespace Tarnwick_API
