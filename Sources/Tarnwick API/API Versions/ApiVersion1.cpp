#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include <Platform/Text/Wiping.hpp>

#include <utility>

#include "BuildConstants.hpp"
#include "LastStatus.hpp"
#include "OAuthHeader.hpp"
#include "PreparedRequest.hpp"
#include "RequestEngine.hpp"
#include "SharedSession.hpp"

namespace Tarnwick_API {

std::shared_ptr<ApiVersion1> ApiVersion1::create(std::optional<std::string> consumerKey,
                                                 std::optional<std::string> consumerSecret, std::int64_t partnersId,
                                                 const Platform::Uuid& uuid, std::string keychainService,
                                                 ApiEnvironment environment, ApiUrl apiUrl) {
    return std::make_shared<ApiVersion1>(Key{}, std::move(consumerKey), std::move(consumerSecret), partnersId, uuid,
                                         std::move(keychainService), environment, std::move(apiUrl));
}

std::shared_ptr<ApiVersion1> ApiVersion1::create(std::optional<std::string> consumerKey,
                                                 std::optional<std::string> consumerSecret, std::int64_t partnersId,
                                                 std::string keychainService, ApiEnvironment environment,
                                                 ApiUrl apiUrl) {
    return create(std::move(consumerKey), std::move(consumerSecret), partnersId, Platform::Uuid::random(),
                  std::move(keychainService), environment, std::move(apiUrl));
}

ApiVersion1::ApiVersion1(Key /*unused*/, std::optional<std::string> consumerKey,
                         std::optional<std::string> consumerSecret, std::int64_t partnersId, const Platform::Uuid& uuid,
                         std::string keychainService, ApiEnvironment environment, ApiUrl apiUrl)
    : consumerKey_{std::move(consumerKey).value_or(std::string{})},
      consumerSecret_{std::move(consumerSecret).value_or(std::string{})},
      partnersId_{partnersId},
      uuid_{uuid},
      apiUrl_{std::move(apiUrl)},
      keychainTokenService_{std::move(keychainService)},
      environment_{environment},
      lastRequest_{std::make_unique<LastRequest>()},
      lastStatus_{std::make_unique<LastStatus>()} {
    setUpEngine();
}

ApiVersion1::~ApiVersion1() {
    setOauthToken(std::nullopt);
}

void ApiVersion1::setConsumerKey(std::string consumerKey) {
    consumerKey_ = std::move(consumerKey);
    forgetCredentials();
}

void ApiVersion1::setConsumerSecret(std::string consumerSecret) {
    consumerSecret_ = std::move(consumerSecret);
    forgetCredentials();
}

void ApiVersion1::setOauthToken(std::optional<OAuthToken> token) {
    forgetCredentials();
    oauthToken_.swap(token);
    if (token) {
        Platform::wipe(token->token);
        Platform::wipe(token->secret);
    }
}

std::shared_ptr<Platform::HttpSession> ApiVersion1::sessionManager() {
    return SharedSession::get();
}

void ApiVersion1::setSessionManager(std::shared_ptr<Platform::HttpSession> session) {
    SharedSession::set(std::move(session));
}

Platform::HttpSessionConfiguration ApiVersion1::defaultSessionConfiguration() {
    return SharedSession::defaultConfiguration();
}

std::optional<std::string> ApiVersion1::username() const {
    return oauthToken_ ? std::optional{oauthToken_->token} : std::nullopt;
}

std::string ApiVersion1::baseUrl() const {
    return useFallbackIp_ ? "https://" + fallbackIp() + "/vb" : apiUrl_.baseUrl(environment_);
}

std::string ApiVersion1::fallbackIp() const {
    switch (environment_) {
        case ApiEnvironment::dev:
        case ApiEnvironment::staging:
            return BuildConstants::devStagingFallbackIp;
        case ApiEnvironment::live:
        case ApiEnvironment::beta:
            break;
    }
    return BuildConstants::liveBetaFallbackIp;
}

void ApiVersion1::setRetrySpread(RetrySpread spread) {
    retrySpread_ = spread.share > 0 ? std::make_shared<const RetrySpread>(std::move(spread)) : nullptr;
    setUpEngine();
}

void ApiVersion1::setAttemptObservers(std::shared_ptr<const AttemptObservers> observers) {
    attemptObservers_ = std::move(observers);
    setUpEngine();
}

void ApiVersion1::setUpEngine() {
    engine_ = std::make_shared<const RequestEngine>(&SharedSession::get, maxRetries_, retrySpread_, attemptObservers_);
}

ApiBase ApiVersion1::apiBase() const {
    return {.environment = environment_, .partnersId = partnersId_, .baseUrl = baseUrl()};
}

void ApiVersion1::sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                              Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                              Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) {
    engine_->send(shared_from_this(), prepareRequest(method, url, parameters, encoding, headers, apiHost()), retryCount,
                  std::move(onCompletion));
}

std::string ApiVersion1::getOauthHeader() const {
    return oauthHeader(consumerKey_, consumerSecret_, oauthToken_);
}

Platform::HttpHeaders ApiVersion1::authorization() const {
    Platform::HttpHeaders headers;
    headers.emplace("Authorization", getOauthHeader());
    return headers;
}

const std::shared_ptr<const Platform::RequestHeaders>& ApiVersion1::standardHeaders() {
    const auto& host = apiUrl_.hostname(environment_);
    if (!standardHeaders_ || standardHeaders_->fields().at("Host") != host) {
        auto headers = authorization();
        headers.emplace("Content-Type", "application/json");
        headers.emplace("Accept", "application/json");
        headers.emplace("Host", host);
        standardHeaders_ = std::make_shared<const Platform::RequestHeaders>(std::move(headers));
    }
    return standardHeaders_;
}

void ApiVersion1::forgetCredentials() noexcept {
    standardHeaders_ = nullptr;
    *lastRequest_ = {};
    lastStatus_->forget();
}

}  // namespace Tarnwick_API
