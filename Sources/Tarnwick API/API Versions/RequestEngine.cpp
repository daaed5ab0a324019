#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <Calls/DeliverCompletion.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Text/Utf8.hpp>

#include <chrono>
#include <cmath>
#include <string_view>
#include <utility>

#include <PasswordMask.hpp>

namespace Tarnwick_API {

namespace {

constexpr const char* function = "sendRequest(url:parameters:encoding:headers:method:retryCount:onCompletion:)";
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

std::chrono::nanoseconds pauseBeforeRetry(std::int64_t retryCount) {
    const std::chrono::duration<double> seconds{std::exp(0.1 * static_cast<double>(retryCount))};
    return std::chrono::duration_cast<std::chrono::nanoseconds>(seconds);
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

}  // namespace

/// What every attempt of one request repeats.
struct ApiVersion1::RequestChain {
    Platform::Url url;
    SharedRequest request;
    RequestCompletion onCompletion;

    void complete(std::optional<Platform::Bytes> body, ApiResult result) const {
        deliver(onCompletion, std::move(body), std::move(result));
    }
    void completeNotReachable() const { complete(std::nullopt, {.status = 0, .error = ResponseError::notReachable()}); }
};

void ApiVersion1::sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                              Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                              Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) {
    auto request = std::make_shared<const Platform::HttpRequest>(
        Platform::HttpRequest{method, url, parameters, encoding, headers}.withHeader(hostHeader, apiHost()));
    attempt(std::make_shared<const RequestChain>(RequestChain{url, std::move(request), std::move(onCompletion)}),
            retryCount);
}

void ApiVersion1::attempt(const std::shared_ptr<const RequestChain>& chain, std::int64_t retryCount) {
    const auto session = sessionManager();
    if (!session->isReachable(chain->url.absoluteString())) {
        chain->completeNotReachable();
        return;
    }
    const auto request = naming(chain->request, apiHost());
    session->send(request, [self = shared_from_this(), chain, retryCount](Platform::HttpAnswer answer) {
        self->handleAnswer(chain, retryCount, std::move(answer));
    });
    logRequest(*request, session->defaultHeaders());
}

void ApiVersion1::handleAnswer(const std::shared_ptr<const RequestChain>& chain, std::int64_t retryCount,
                               Platform::HttpAnswer answer) {
    logAnswer(answer, useFallbackIp_);
    if (answer.error) {
        retryOrGiveUp(chain, retryCount);
        return;
    }
    if (!answer.response) {
        return;
    }
    const auto status = answer.response->status;
    if (status == 0) {
        retryOrGiveUp(chain, retryCount);
    } else if (status == accepted) {
        chain->complete(std::nullopt, {.status = status, .error = std::nullopt});
    } else if (status >= 200 && status <= 299) {
        if (answer.body) {
            chain->complete(std::move(answer.body), {.status = status, .error = std::nullopt});
        }
    } else {
        chain->complete(std::nullopt, {.status = status, .error = ResponseError::fromAnswer(status, answer.body)});
    }
}

void ApiVersion1::retryOrGiveUp(const std::shared_ptr<const RequestChain>& chain, std::int64_t retryCount) {
    if (retryCount >= maxRetries_) {
        chain->completeNotReachable();
        return;
    }
    Platform::MainQueue::main()->after(pauseBeforeRetry(retryCount), [self = shared_from_this(), chain, retryCount] {
        self->attempt(chain, retryCount + 1);
    });
}

}  // namespace Tarnwick_API
