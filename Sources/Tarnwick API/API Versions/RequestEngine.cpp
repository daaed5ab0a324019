#include <Tarnwick_API/API Versions/ApiVersion1.hpp>

#include <Tarnwick_API/Platform/MainQueue.hpp>

#include <Platform/Json/Utf8.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Tarnwick API/API Versions/PasswordMask.hpp>
#include <Tarnwick API/Calls/DeliverCompletion.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>
#include <utility>

namespace Tarnwick_API {

namespace {

constexpr const char* function = "sendRequest(url:parameters:encoding:headers:method:retryCount:onCompletion:)";
constexpr std::int64_t accepted = 202;

bool isHostHeader(std::string_view name) noexcept {
    constexpr std::string_view host = "host";
    return std::equal(name.begin(), name.end(), host.begin(), host.end(),
                      [](char actual, char expected) { return (actual | 0x20) == expected; });
}

Platform::HttpHeaders withHost(Platform::HttpHeaders headers, std::string host) {
    std::erase_if(headers, [](const auto& header) { return isHostHeader(header.first); });
    headers.emplace("Host", std::move(host));
    return headers;
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
    Platform::Parameters parameters;
    Platform::ParameterEncoding encoding;
    Platform::HttpHeaders headers;
    Platform::HttpMethod method;
    RequestCompletion onCompletion;

    void complete(std::optional<Platform::Bytes> body, ApiResult result) const {
        deliver(onCompletion, std::move(body), std::move(result));
    }
    void completeNotReachable() const { complete(std::nullopt, {.status = 0, .error = ResponseError::notReachable()}); }
};

void ApiVersion1::sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                              Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                              Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) {
    attempt(std::make_shared<const RequestChain>(
                RequestChain{url, parameters, encoding, headers, method, std::move(onCompletion)}),
            retryCount);
}

void ApiVersion1::attempt(const std::shared_ptr<const RequestChain>& chain, std::int64_t retryCount) {
    const auto session = sessionManager();
    if (!session->isReachable(chain->url.absoluteString())) {
        chain->completeNotReachable();
        return;
    }
    const auto request = std::make_shared<const Platform::HttpRequest>(
        chain->method, chain->url, chain->parameters, chain->encoding, withHost(chain->headers, apiHost()));
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
