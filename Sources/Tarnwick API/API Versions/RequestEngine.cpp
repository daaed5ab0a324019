#include "RequestEngine.hpp"

#include <Tarnwick_API/Operations/StoppableScope.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <Calls/DeliverCompletion.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Text/Utf8.hpp>

#include <atomic>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include "PasswordMask.hpp"
#include "RetryPause.hpp"

namespace Tarnwick_API {

namespace {

constexpr const char* function = "sendRequest(url:parameters:encoding:headers:method:retryCount:onCompletion:)";

/// HTTP's "Accepted", which has no name in `HttpStatus`.
constexpr std::int64_t accepted = 202;

constexpr std::string_view hostHeader = "Host";

using SharedRequest = std::shared_ptr<const Platform::HttpRequest>;

/// `request` as it is when it names `host` already, which spares a copy for each retry.
SharedRequest naming(const SharedRequest& request, const std::string& host) {
    const auto named = request->headers().find(hostHeader);
    if (named != request->headers().end() && named->second == host) {
        return request;
    }
    return std::make_shared<const Platform::HttpRequest>(request->withHeader(hostHeader, host));
}

void logRequest(const Platform::HttpRequest& request, const Platform::HttpHeaders& sessionHeaders) {
    if (!Platform::DebugChannel::isOpen()) {
        return;
    }
    Platform::DebugChannel::write("API request as curl:", function);
    Platform::DebugChannel::write(obfuscateLoginString(request.curlRendering(sessionHeaders)), function);
}

void logAnswer(const Platform::HttpAnswer& answer, bool useFallbackIp) {
    if (!Platform::DebugChannel::isOpen()) {
        return;
    }
    using Platform::DebugChannel;
    DebugChannel::write(useFallbackIp ? "Use fallback mode: true" : "Use fallback mode: false", function);
    DebugChannel::write("API request:", function);
    DebugChannel::write(answer.request ? "= URLRequest: " + answer.request->url().absoluteString() : "= nil", function);
    DebugChannel::write("statuscode: " + std::to_string(answer.response ? answer.response->status : -999), function);
    if (answer.body) {
        DebugChannel::write("response data:", function);
        DebugChannel::write(Platform::isValidUtf8(*answer.body) ? std::string_view{*answer.body} : std::string_view{},
                            function);
    }
}

/// Why there is no answer; none when there is one.
std::optional<Platform::HttpError> failure(const Platform::HttpAnswer& answer) {
    using Kind = Platform::HttpError::Kind;
    if (answer.error) {
        return answer.error;
    }
    if (!answer.response) {
        return Platform::HttpError{Kind::other, "the session gave neither an error nor a response"};
    }
    if (answer.response->status == 0) {
        return Platform::HttpError{Kind::badAnswer, "the session gave an answer with the status 0"};
    }
    return std::nullopt;
}

/// Whether the transfer has failed, so that another may come to an answer.
bool hasFailed(const Platform::HttpAnswer& answer) noexcept {
    return answer.error || (answer.response && answer.response->status == 0);
}

void rethrow(const std::exception_ptr& thrown) {
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

constexpr bool isSuccess(std::int64_t status) noexcept {
    return status / 100 == 2;
}

struct Ending {
    std::optional<Platform::Bytes> body;
    ApiResult result;
};

/// How an answer that came without a transport error ends its request; none when nobody is told.
std::optional<Ending> classify(std::int64_t status, std::optional<Platform::Bytes> body) {
    if (status == accepted) {
        return Ending{.body = std::nullopt, .result = {.status = status, .error = std::nullopt}};
    }
    if (!isSuccess(status)) {
        return Ending{.body = std::nullopt,
                      .result = {.status = status, .error = ResponseError::fromAnswer(status, body)}};
    }
    if (!body) {
        return std::nullopt;
    }
    return Ending{.body = std::move(body), .result = {.status = status, .error = std::nullopt}};
}

}  // namespace

/// What every attempt of one request repeats, and whether it has ended.
struct RequestEngine::Chain {
    Chain(RequestEngine itsEngine, Platform::Url itsUrl, SharedRequest itsRequest, RequestCompletion itsCompletion)
        : engine{std::move(itsEngine)},
          url{std::move(itsUrl)},
          request{std::move(itsRequest)},
          onCompletion{std::move(itsCompletion)} {}

    RequestEngine engine;
    Platform::Url url;
    SharedRequest request;
    RequestCompletion onCompletion;
    /// Not kept alive: the queue's tasks keep the chain.
    std::weak_ptr<Platform::MainQueue> firstQueue = Platform::MainQueue::main();
    Platform::StopToken stop = StoppableScope::take();
    Platform::StopToken::Registration endOnStop;
    std::atomic<bool> hasEnded = false;

    /// Where it began, and so goes on, unless that queue is no more.
    [[nodiscard]] std::shared_ptr<Platform::MainQueue> queue() const {
        auto first = firstQueue.lock();
        return first ? first : Platform::MainQueue::main();
    }

    [[nodiscard]] bool isObserved() const noexcept {
        return engine.observers_ != nullptr && !engine.observers_->isEmpty();
    }

    /// Gives what an observer throws, so that the chain goes on first.
    [[nodiscard]] std::exception_ptr tell(const RequestAttempt& attempt, AttemptObservers::Teller teller) const {
        try {
            engine.observers_->tell(attempt, teller);
        } catch (...) {
            return std::current_exception();
        }
        return nullptr;
    }

    void complete(std::optional<Platform::Bytes> body, ApiResult result) {
        if (!hasEnded.exchange(true)) {
            endOnStop = {};
            deliver(std::exchange(onCompletion, {}), std::move(body), std::move(result));
        }
    }

    void completeNotReachable() { complete(std::nullopt, {.status = 0, .error = ResponseError::notReachable()}); }
    void completeStopped(Platform::StopReason reason) {
        complete(std::nullopt, {.status = 0, .error = CancellationError{reason}});
    }
};

RequestEngine::RequestEngine(SessionLookup session, std::shared_ptr<const ApiCommunicateable> owner,
                             std::int64_t maxRetries, std::shared_ptr<const RetrySpread> retrySpread,
                             std::shared_ptr<const AttemptObservers> observers)
    : session_{std::move(session)},
      owner_{std::move(owner)},
      maxRetries_{maxRetries},
      retrySpread_{std::move(retrySpread)},
      observers_{std::move(observers)} {
}

void RequestEngine::send(const Platform::Url& url, const Platform::Parameters& parameters,
                         Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                         Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) const {
    auto request = std::make_shared<const Platform::HttpRequest>(
        Platform::HttpRequest{method, url, parameters, encoding, headers}.withHeader(hostHeader, owner_->apiHost()));
    const auto chain = std::make_shared<Chain>(*this, url, std::move(request), std::move(onCompletion));
    if (const auto reason = chain->stop.reason()) {
        chain->queue()->soon([chain, reason] { chain->completeStopped(*reason); });
        return;
    }
    chain->endOnStop = chain->stop.onStop([weak = std::weak_ptr{chain}](Platform::StopReason reason) {
        if (const auto stopped = weak.lock()) {
            stopped->queue()->soon([stopped, reason] { stopped->completeStopped(reason); });
        }
    });
    attempt(chain, retryCount, AttemptObservers::Teller::caller);
}

void RequestEngine::attempt(const SharedChain& chain, std::int64_t retryCount, AttemptObservers::Teller teller) {
    if (chain->stop.isStopped()) {
        return;
    }
    const auto session = chain->engine.session_();
    if (!session->isReachable(chain->url.absoluteString())) {
        std::exception_ptr thrown;
        if (chain->isObserved()) {
            thrown = chain->tell({.host = std::string{chain->url.host()},
                                  .number = retryCount + 1,
                                  .failure = Platform::HttpError{Platform::HttpError::Kind::cannotConnect,
                                                                 "this computer has no network route to the service"}},
                                 teller);
        }
        chain->completeNotReachable();
        rethrow(thrown);
        return;
    }
    const auto request = naming(chain->request, chain->engine.owner_->apiHost());
    auto onAnswer = [chain, retryCount](Platform::HttpAnswer answer) {
        const auto queue = chain->queue();
        if (queue == Platform::MainQueue::main()) {
            receive(chain, retryCount, std::move(answer));
            return;
        }
        // The session answers a retry on the queue of that moment. A task must be copyable: so the answer is shared.
        const auto shared = std::make_shared<Platform::HttpAnswer>(std::move(answer));
        queue->soon([chain, retryCount, shared] { receive(chain, retryCount, std::move(*shared)); });
    };
    if (chain->stop.canStop()) {
        session->sendStoppable(request, std::move(onAnswer), chain->stop);
    } else {
        session->send(request, std::move(onAnswer));
    }
    logRequest(*request, session->defaultHeaders());
}

void RequestEngine::receive(const SharedChain& chain, std::int64_t retryCount, Platform::HttpAnswer answer) {
    if (chain->stop.isStopped()) {
        return;
    }
    logAnswer(answer, chain->engine.owner_->useFallbackIp());
    std::exception_ptr thrown;
    if (chain->isObserved()) {
        thrown = chain->tell({.host = std::string{chain->url.host()},
                              .number = retryCount + 1,
                              .failure = failure(answer),
                              .anotherFollows = hasFailed(answer) && retryCount < chain->engine.maxRetries_,
                              .source = answer.source},
                             AttemptObservers::Teller::mainQueue);
    }
    goOn(chain, retryCount, std::move(answer));
    rethrow(thrown);
}

void RequestEngine::goOn(const SharedChain& chain, std::int64_t retryCount, Platform::HttpAnswer answer) {
    if (hasFailed(answer)) {
        retryOrGiveUp(chain, retryCount);
        return;
    }
    if (!answer.response) {
        return;
    }
    if (auto ending = classify(answer.response->status, std::move(answer.body))) {
        chain->complete(std::move(ending->body), std::move(ending->result));
    }
}

void RequestEngine::retryOrGiveUp(const SharedChain& chain, std::int64_t retryCount) {
    if (retryCount >= chain->engine.maxRetries_) {
        chain->completeNotReachable();
        return;
    }
    chain->queue()->after(pauseBeforeRetry(retryCount, chain->engine.retrySpread_.get()),
                          [chain, retryCount] { attempt(chain, retryCount + 1, AttemptObservers::Teller::mainQueue); });
}

}  // namespace Tarnwick_API
