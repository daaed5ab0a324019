#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include <Platform/Text/Wiping.hpp>

#include <utility>

#include "BuildConstants.hpp"
#include "OAuthHeader.hpp"
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
      environment_{environment} {
}

ApiVersion1::~ApiVersion1() {
    setOauthToken(std::nullopt);
}

void ApiVersion1::setOauthToken(std::optional<OAuthToken> token) {
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
}

ApiBase ApiVersion1::apiBase() const {
    return {.environment = environment_, .partnersId = partnersId_, .baseUrl = baseUrl()};
}

void ApiVersion1::sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                              Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                              Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) {
    requestEngine().send(url, parameters, encoding, headers, method, retryCount, std::move(onCompletion));
}

RequestEngine ApiVersion1::requestEngine() {
    return {&SharedSession::get, shared_from_this(), maxRetries_, retrySpread_, attemptObservers_};
}

std::string ApiVersion1::getOauthHeader() const {
    return oauthHeader(consumerKey_, consumerSecret_, oauthToken_);
}

Platform::HttpHeaders ApiVersion1::authorization() const {
    Platform::HttpHeaders headers;
    headers.emplace("Authorization", getOauthHeader());
    return headers;
}

Platform::HttpHeaders ApiVersion1::standardHeaders() const {
    auto headers = authorization();
    headers.emplace("Content-Type", "application/json");
    headers.emplace("Accept", "application/json");
    return headers;
}

}  // namespace Tarnwick_API
