#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiCommunicateable.hpp>
#include <Tarnwick_API/Platform/Application/Uuid.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// An early stub of the second API generation, on purpose: it sends nothing, and NO completion is ever called; whoever
/// waits for one waits for ever. Assigning its properties has no effect beyond reading them back.
class TARNWICK_API_EXPORT ApiVersion2 final : public ApiCommunicateable {
public:
    ApiVersion2(std::optional<std::string> consumerKey, std::optional<std::string> consumerSecret,
                const Platform::Uuid& uuid);

    /// The process's plain session; the argument is ignored. Thread: any.
    [[nodiscard]] static std::shared_ptr<Platform::HttpSession> sessionManager(std::string_view ignored);

    [[nodiscard]] const std::string& consumerKey() const noexcept { return consumerKey_; }
    void setConsumerKey(std::string consumerKey) { consumerKey_ = std::move(consumerKey); }
    [[nodiscard]] const std::string& consumerSecret() const noexcept { return consumerSecret_; }
    void setConsumerSecret(std::string consumerSecret) { consumerSecret_ = std::move(consumerSecret); }
    [[nodiscard]] const std::optional<OAuthToken>& oauthToken() const noexcept { return oauthToken_; }
    void setOauthToken(std::optional<OAuthToken> token) { oauthToken_ = std::move(token); }
    [[nodiscard]] const Platform::Uuid& uuid() const noexcept { return uuid_; }
    void setUuid(const Platform::Uuid& uuid) { uuid_ = uuid; }
    void setApiHost(std::string apiHost) { apiHost_ = std::move(apiHost); }
    void setFallbackIp(std::string fallbackIp) { fallbackIp_ = std::move(fallbackIp); }

    /// Always the empty text.
    [[nodiscard]] std::optional<std::string> username() const override { return std::string{}; }
    [[nodiscard]] ApiEnvironment environment() const override { return environment_; }
    void setEnvironment(ApiEnvironment environment) override { environment_ = environment; }
    [[nodiscard]] std::string apiHost() const override { return apiHost_; }
    /// The development endpoint, whatever the environment.
    [[nodiscard]] std::string baseUrl() const override;
    [[nodiscard]] std::string fallbackIp() const override { return fallbackIp_; }
    [[nodiscard]] bool useFallbackIp() const override { return useFallbackIp_; }
    void setUseFallbackIp(bool useFallbackIp) override { useFallbackIp_ = useFallbackIp; }

    void currentUser(Completion<User> onCompletion) override;
    void login(const std::string& username, const std::string& password, bool qvImport,
               Completion<void> onCompletion) override;
    void logout(Completion<void> onCompletion) override;
    void setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) override;
    void getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                      Completion<std::vector<Country>> onCompletion) override;
    /// As empty as the others.
    void getCountries(const Completion<std::vector<Country>>& onCompletion);
    void getServers(std::int64_t filterId, const std::string& countryCode, std::optional<double> latitude,
                    std::optional<double> longitude, Completion<std::vector<Server>> onCompletion) override;
    void getServer(std::int64_t id, Completion<Server> onCompletion) override;
    void getCandidateServers(std::int64_t filterId, const std::optional<std::string>& countryCode,
                             std::optional<std::int64_t> serviceId,
                             Completion<std::vector<Server>> onCompletion) override;
    void updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion) override;
    void createUser(const std::string& username, const std::string& password, Completion<void> onCompletion) override;
    void getStatus(Completion<Status> onCompletion) override;
    void getAuthToken(Completion<std::string> onCompletion) override;
    void getDevices(Completion<std::vector<Device>> onCompletion) override;
    void getDefaultFavorites(std::int64_t filterId, Completion<std::vector<FavoriteEntry>> onCompletion) override;
    void sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                     Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                     Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) override;
    using ApiCommunicateable::sendRequest;

private:
    std::string consumerKey_;
    std::string consumerSecret_;
    std::optional<OAuthToken> oauthToken_;
    Platform::Uuid uuid_;
    std::string apiHost_;
    std::string fallbackIp_;
    bool useFallbackIp_ = false;
    ApiEnvironment environment_ = ApiEnvironment::live;
};

}  // namespace Tarnwick_API
