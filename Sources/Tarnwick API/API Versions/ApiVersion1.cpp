#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include <utility>

#include <OAuthHeader.hpp>

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
            return TARNWICK_FALLBACK_DEV_STAGING;
        case ApiEnvironment::live:
        case ApiEnvironment::beta:
            break;
    }
    return TARNWICK_FALLBACK_LIVE_BETA;
}

std::string ApiVersion1::getOauthHeader() const {
    return oauthHeader(consumerKey_, consumerSecret_, oauthToken_);
}

Platform::HttpHeaders ApiVersion1::standardHeaders() const {
    return {
        {"Content-Type", "application/json"},
        {"Accept", "application/json"},
        {"Authorization", getOauthHeader()},
    };
}

}  // namespace Tarnwick_API
