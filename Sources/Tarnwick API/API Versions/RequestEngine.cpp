#include "RequestEngine.hpp"

#include <Tarnwick_API/Operations/StoppableScope.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <Calls/DeliverCompletion.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Text/Utf8.hpp>

#include <atomic>
#include <exception>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "PasswordMask.hpp"
#include "RetryPause.hpp"
#include "SecretHiding.hpp"

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

bool hidesSecrets(const Platform::DebugChannel::Reader& reader) noexcept {
    return reader.secrets() == Platform::Logging::Secrets::hidden;
}

/// `shown`: the same request as a log may show it that hides secrets; none when there was no such log.
void logRequest(const SharedRequest& request, const SharedRequest& shown, const Platform::HttpHeaders& sessionHeaders) {
    const auto reader = Platform::DebugChannel::reader();
    if (!reader) {
        return;
    }
    reader.write("API request as curl:", function);
    if (hidesSecrets(reader)) {
        const auto hiding = shown ? shown : SecretHiding::shownRequest(*request);
        reader.write(naming(hiding, request->headers().at(std::string{hostHeader}))
                         ->curlRendering(SecretHiding::shown(sessionHeaders)),
                     function);
    } else {
        reader.write(obfuscateLoginString(request->curlRendering(sessionHeaders)), function);
    }
}

void logAnswer(const Platform::HttpAnswer& answer, bool useFallbackIp) {
    const auto reader = Platform::DebugChannel::reader();
    if (!reader) {
        return;
    }
    const bool hides = hidesSecrets(reader);
    const auto shown = [hides](const Platform::Url& url) {
        return hides ? SecretHiding::shown(url) : url.absoluteString();
    };
    reader.write(useFallbackIp ? "Use fallback mode: true" : "Use fallback mode: false", function);
    reader.write("API request:", function);
    reader.write(answer.request ? "= URLRequest: " + shown(answer.request->url()) : "= nil", function);
    reader.write("statuscode: " + std::to_string(answer.response ? answer.response->status : -999), function);
    if (answer.body) {
        reader.write("response data:", function);
        if (hides) {
            reader.write(SecretHiding::shownBody(*answer.body), function);
        } else {
            reader.write(Platform::isValidUtf8(*answer.body) ? std::string_view{*answer.body} : std::string_view{},
                         function);
        }
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
    Chain(std::shared_ptr<const RequestEngine> itsEngine, std::shared_ptr<const ApiCommunicateable> itsOwner,
          std::shared_ptr<const PreparedRequest> whatItSends, RequestCompletion itsCompletion)
        : engine{std::move(itsEngine)},
          owner{std::move(itsOwner)},
          prepared{std::move(whatItSends)},
          onCompletion{std::move(itsCompletion)} {}

    std::shared_ptr<const RequestEngine> engine;
    std::shared_ptr<const ApiCommunicateable> owner;
    std::shared_ptr<const PreparedRequest> prepared;
    RequestCompletion onCompletion;
    /// Not kept alive: the queue's tasks keep the chain.
    std::weak_ptr<Platform::MainQueue> firstQueue = Platform::MainQueue::main();
    struct Stop {
        Platform::StopToken token;
        Platform::StopToken::Registration endOnStop = {};
    };
    /// None when nothing can stop it.
    std::unique_ptr<Stop> stop;
    /// The attempt whose answer counts: a host's session may throw and answer, or answer twice.
    std::atomic<std::int64_t> awaitedRetry = noRetry;
    static constexpr auto noRetry = std::numeric_limits<std::int64_t>::min();
    /// No answer counts any more.
    static constexpr auto hasEnded = noRetry + 1;

    [[nodiscard]] bool isStopped() const { return stop && stop->token.isStopped(); }

    /// False when nobody waits for an answer any more.
    [[nodiscard]] bool await(std::int64_t retryCount) noexcept {
        auto before = noRetry;
        return awaitedRetry.compare_exchange_strong(before, retryCount);
    }
    [[nodiscard]] bool isAnswered(std::int64_t retryCount) noexcept {
        return !awaitedRetry.compare_exchange_strong(retryCount, noRetry);
    }

    /// Where it began, and so goes on, unless that queue is no more.
    [[nodiscard]] std::shared_ptr<Platform::MainQueue> queue() const {
        auto first = firstQueue.lock();
        return first ? first : Platform::MainQueue::main();
    }

    [[nodiscard]] bool isObserved() const noexcept {
        return engine->observers_ != nullptr && !engine->observers_->isEmpty();
    }

    /// Gives what an observer throws, so that the chain goes on first.
    [[nodiscard]] std::exception_ptr tell(const RequestAttempt& attempt, AttemptObservers::Teller teller) const {
        try {
            engine->observers_->tell(attempt, teller);
        } catch (...) {
            return std::current_exception();
        }
        return nullptr;
    }

    void complete(std::optional<Platform::Bytes> body, ApiResult result) {
        if (awaitedRetry.exchange(hasEnded) != hasEnded) {
            if (stop) {
                stop->endOnStop = {};
            }
            deliver(std::exchange(onCompletion, {}), std::move(body), std::move(result));
        }
    }

    void completeNotReachable() { complete(std::nullopt, {.status = 0, .error = ResponseError::notReachable()}); }
    void completeStopped(Platform::StopReason reason) {
        complete(std::nullopt, {.status = 0, .error = CancellationError{reason}});
    }
};

RequestEngine::RequestEngine(SessionLookup session, std::int64_t maxRetries,
                             std::shared_ptr<const RetrySpread> retrySpread,
                             std::shared_ptr<const AttemptObservers> observers)
    : session_{std::move(session)},
      maxRetries_{maxRetries},
      retrySpread_{std::move(retrySpread)},
      observers_{std::move(observers)} {
}

void RequestEngine::send(std::shared_ptr<const ApiCommunicateable> owner,
                         std::shared_ptr<const PreparedRequest> request, std::int64_t retryCount,
                         RequestCompletion onCompletion) const {
    const auto chain =
        std::make_shared<Chain>(shared_from_this(), std::move(owner), std::move(request), std::move(onCompletion));
    if (auto token = StoppableScope::take(); token.canStop()) {
        if (const auto reason = token.reason()) {
            chain->queue()->soon([chain, reason] { chain->completeStopped(*reason); });
            return;
        }
        chain->stop = std::make_unique<Chain::Stop>(Chain::Stop{std::move(token)});
        chain->stop->endOnStop = chain->stop->token.onStop([weak = std::weak_ptr{chain}](Platform::StopReason reason) {
            if (const auto stopped = weak.lock()) {
                stopped->queue()->soon([stopped, reason] { stopped->completeStopped(reason); });
            }
        });
    }
    attempt(chain, retryCount, AttemptObservers::Teller::caller);
}

void RequestEngine::attempt(const SharedChain& chain, std::int64_t retryCount, AttemptObservers::Teller teller) {
    if (chain->isStopped() || !chain->await(retryCount)) {
        return;
    }
    bool mayTryAgain = false;
    try {
        if (start(chain, retryCount)) {
            return;
        }
    } catch (...) {
        if (chain->isAnswered(retryCount)) {
            return;
        }
        Platform::DebugChannel::writeException("The host's session has failed", function);
        mayTryAgain = true;
    }
    std::exception_ptr thrown;
    if (chain->isObserved()) {
        using Error = Platform::HttpError;
        using Kind = Error::Kind;
        thrown = chain->tell(
            {.host = std::string{chain->prepared->url.host()},
             .number = retryCount + 1,
             .failure = mayTryAgain ? Error{Kind::other, "the host's session has thrown an exception"}
                                    : Error{Kind::cannotConnect, "this computer has no network route to the service"},
             .anotherFollows = mayTryAgain && retryCount < chain->engine->maxRetries_},
            teller);
    }
    if (mayTryAgain) {
        retryOrGiveUp(chain, retryCount);
    } else {
        chain->completeNotReachable();
    }
    rethrow(thrown);
}

bool RequestEngine::start(const SharedChain& chain, std::int64_t retryCount) {
    const auto session = chain->engine->session_();
    if (!session->isReachable(chain->prepared->url.absoluteString())) {
        return false;
    }
    const auto request = naming({chain->prepared, &chain->prepared->request}, chain->owner->apiHost());
    auto onAnswer = [chain, retryCount](Platform::HttpAnswer answer) {
        if (chain->isAnswered(retryCount)) {
            return;
        }
        const auto queue = chain->queue();
        if (queue == Platform::MainQueue::main()) {
            receive(chain, retryCount, std::move(answer));
            return;
        }
        // The session answers a retry on the queue of that moment. A task must be copyable: so the answer is shared.
        const auto shared = std::make_shared<Platform::HttpAnswer>(std::move(answer));
        queue->soon([chain, retryCount, shared] { receive(chain, retryCount, std::move(*shared)); });
    };
    if (chain->stop) {
        session->sendStoppable(request, std::move(onAnswer), chain->stop->token);
    } else {
        session->send(request, std::move(onAnswer));
    }
    logRequest(request, chain->prepared->shown, session->defaultHeaders());
    return true;
}

void RequestEngine::receive(const SharedChain& chain, std::int64_t retryCount, Platform::HttpAnswer&& answer) {
    if (chain->isStopped()) {
        return;
    }
    logAnswer(answer, chain->owner->useFallbackIp());
    std::exception_ptr thrown;
    if (chain->isObserved()) {
        thrown = chain->tell({.host = std::string{chain->prepared->url.host()},
                              .number = retryCount + 1,
                              .failure = failure(answer),
                              .anotherFollows = hasFailed(answer) && retryCount < chain->engine->maxRetries_,
                              .source = answer.source},
                             AttemptObservers::Teller::mainQueue);
    }
    goOn(chain, retryCount, std::move(answer));
    rethrow(thrown);
}

void RequestEngine::goOn(const SharedChain& chain, std::int64_t retryCount, Platform::HttpAnswer&& answer) {
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
    if (retryCount >= chain->engine->maxRetries_) {
        chain->completeNotReachable();
        return;
    }
    try {
        chain->queue()->after(pauseBeforeRetry(retryCount, chain->engine->retrySpread_.get()), [chain, retryCount] {
            attempt(chain, retryCount + 1, AttemptObservers::Teller::mainQueue);
        });
    } catch (...) {
        // The host's queue has not taken it, or its source of random numbers has failed.
        chain->completeNotReachable();
        throw;
    }
}

}  // namespace Tarnwick_API
