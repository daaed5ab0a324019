#pragma once

#include <Tarnwick_API/Calls/ApiBase.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiCommunicateable.hpp>
#include <Tarnwick_API/Facade/ApiUrl.hpp>
#include <Tarnwick_API/Facade/RetrySpread.hpp>
#include <Tarnwick_API/Platform/Application/Uuid.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tarnwick_API {

namespace Platform {
class RequestHeaders;
}

class ApiCallV1;
class LastRequest;
class LastStatus;
class RequestEngine;

/// The version-1 backend: requests with OAuth 1.0 PLAINTEXT signatures, tried again when a transfer fails.
///
/// Thread: as `ApiCommunicateable`; `sendRequest` alone may be called from any thread.
/// Lifetime: a request under way keeps the backend alive until its completion has run.
class TARNWICK_API_EXPORT ApiVersion1 final : public ApiCommunicateable,
                                              public std::enable_shared_from_this<ApiVersion1> {
    struct Key {
        explicit Key() = default;
    };

public:
    /// Makes a backend with these settings. Nobody is signed in; `adoptKeptToken` changes that.
    [[nodiscard]] static std::shared_ptr<ApiVersion1> create(std::optional<std::string> consumerKey,
                                                             std::optional<std::string> consumerSecret,
                                                             std::int64_t partnersId, const Platform::Uuid& uuid,
                                                             std::string keychainService, ApiEnvironment environment,
                                                             ApiUrl apiUrl);
    /// As above, with a fresh random installation id.
    [[nodiscard]] static std::shared_ptr<ApiVersion1> create(std::optional<std::string> consumerKey,
                                                             std::optional<std::string> consumerSecret,
                                                             std::int64_t partnersId, std::string keychainService,
                                                             ApiEnvironment environment, ApiUrl apiUrl);

    ApiVersion1(Key, std::optional<std::string> consumerKey, std::optional<std::string> consumerSecret,
                std::int64_t partnersId, const Platform::Uuid& uuid, std::string keychainService,
                ApiEnvironment environment, ApiUrl apiUrl);
    ApiVersion1(const ApiVersion1&) = delete;
    ApiVersion1& operator=(const ApiVersion1&) = delete;
    ~ApiVersion1() override;

    /// The session of the whole process, made on first use from `defaultSessionConfiguration`. Thread: any.
    [[nodiscard]] static std::shared_ptr<Platform::HttpSession> sessionManager();
    /// Replaces it; none makes the next use create it anew. Requests of the old one are cancelled and tried again on
    /// the new one. Thread: any. An attempt for which a host's own session, or its `Reachability`, throws has failed:
    /// it is tried again like any other, and the debug channel has what was thrown. Of several answers to an attempt
    /// the first counts.
    static void setSessionManager(std::shared_ptr<Platform::HttpSession> session);
    /// To be changed at will and given to `Platform::makeHttpSession`: the default headers, and a trust table that
    /// exempts the live and beta fallback address from the check of the certificate's name.
    [[nodiscard]] static Platform::HttpSessionConfiguration defaultSessionConfiguration();

    /// How often a failed transfer is tried again.
    [[nodiscard]] std::int64_t maxRetries() const noexcept { return maxRetries_; }

    [[nodiscard]] const std::string& consumerKey() const noexcept { return consumerKey_; }
    void setConsumerKey(std::string consumerKey);
    [[nodiscard]] const std::string& consumerSecret() const noexcept { return consumerSecret_; }
    void setConsumerSecret(std::string consumerSecret);
    [[nodiscard]] std::int64_t partnersId() const noexcept { return partnersId_; }
    void setPartnersId(std::int64_t partnersId) noexcept { partnersId_ = partnersId; }
    /// The signed-in user's access token. Reading or assigning it does not touch the keychain. The memory of one that
    /// goes is overwritten.
    [[nodiscard]] const std::optional<OAuthToken>& oauthToken() const noexcept { return oauthToken_; }
    void setOauthToken(std::optional<OAuthToken> token);
    [[nodiscard]] const Platform::Uuid& uuid() const noexcept { return uuid_; }
    void setUuid(const Platform::Uuid& uuid) { uuid_ = uuid; }
    [[nodiscard]] const ApiUrl& apiUrl() const noexcept { return apiUrl_; }
    void setApiUrl(ApiUrl apiUrl) { apiUrl_ = std::move(apiUrl); }
    [[nodiscard]] const std::string& keychainTokenService() const noexcept { return keychainTokenService_; }
    void setKeychainTokenService(std::string service) { keychainTokenService_ = std::move(service); }

    /// No name, on purpose, but the access token's text; none when signed out.
    [[nodiscard]] std::optional<std::string> username() const override;
    [[nodiscard]] ApiEnvironment environment() const override { return environment_; }
    void setEnvironment(ApiEnvironment environment) override { environment_ = environment; }
    [[nodiscard]] std::string apiHost() const override { return apiUrl_.hostname(environment_); }
    [[nodiscard]] std::string baseUrl() const override;
    /// One address for `dev` and `staging`, another for `live` and `beta`; both chosen when the library is built.
    [[nodiscard]] std::string fallbackIp() const override;
    [[nodiscard]] bool useFallbackIp() const override { return useFallbackIp_; }
    void setUseFallbackIp(bool useFallbackIp) override { useFallbackIp_ = useFallbackIp; }

    void setRetrySpread(RetrySpread spread) override;
    void setAttemptObservers(std::shared_ptr<const AttemptObservers> observers) override;

    /// What a call made now takes over from this backend: `AddDeviceCallV1{backend->apiBase()}`.
    [[nodiscard]] ApiBase apiBase() const;

    [[nodiscard]] std::optional<SessionError> adoptKeptToken() override;
    [[nodiscard]] Platform::KeychainStatus forgetToken() override;
    [[nodiscard]] std::optional<Platform::KeychainStatus> tokenKeeping() const override { return tokenKeeping_; }

    void currentUser(Completion<User> onCompletion) override;
    void login(const std::string& username, const std::string& password, bool qvImport,
               Completion<void> onCompletion) override;
    /// Writes the line "logout v1" to standard output, on purpose.
    void logout(Completion<void> onCompletion) override;
    void setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) override;
    void getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                      Completion<std::vector<Country>> onCompletion) override;
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

    /// Sends one request: asks whether the service can be reached, adds "Host", and tries a failed transfer again
    /// after 1.0, 1.1, 1.2, 1.35 and 1.5 seconds, unless `setRetrySpread` spreads them.
    ///
    /// Thread: any. `onCompletion` runs once, on the main queue; inside this call when the service can't be reached at
    /// the first try; not at all when a host's own session answers with neither error nor response, or with success
    /// but no body. Of a 202 the body is kept back.
    /// Errors: `ResponseError`, in the result.
    void sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                     Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                     Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) override;
    using ApiCommunicateable::sendRequest;

    /// Sends any call, also those that no operation sends and an application's own, as the operations do: with the
    /// call's parameters, the three standard headers ("Content-Type", "Accept", and "Authorization" with the access
    /// token, if any) and the call's own headers, which count where both have one.
    ///
    /// Thread: the main thread. `onCompletion` runs as in `sendRequest`, with the body as it came:
    /// `Platform::JsonDecoder` makes a record of it.
    /// Errors: `ResponseError`, in the result. A call whose base URL is none ends the process, see `ApiCall::url`.
    /// Lifetime: the call is not needed after this; the backend lives until the completion has run.
    void dispatchCall(const ApiCallV1& call, RequestCompletion onCompletion);

private:
    [[nodiscard]] std::string getOauthHeader() const;
    [[nodiscard]] Platform::HttpHeaders authorization() const;
    /// With "Host". Made once for as long as neither it nor the credentials change.
    [[nodiscard]] const std::shared_ptr<const Platform::RequestHeaders>& standardHeaders();
    void forgetCredentials() noexcept;
    void setUpEngine();
    /// Sends a call with these parameters; the headers go with the request, which leaves nothing of them in memory.
    void sendCall(const ApiCallV1& call, const Platform::Parameters& parameters, Platform::ParameterEncoding encoding,
                  Platform::HttpHeaders headers, RequestCompletion onCompletion);

    std::int64_t maxRetries_ = 5;
    /// None while it spreads nothing.
    std::shared_ptr<const RetrySpread> retrySpread_;
    std::string consumerKey_;
    std::string consumerSecret_;
    std::int64_t partnersId_;
    std::optional<OAuthToken> oauthToken_;
    std::optional<Platform::KeychainStatus> tokenKeeping_;
    Platform::Uuid uuid_;
    ApiUrl apiUrl_;
    bool useFallbackIp_ = false;
    std::string keychainTokenService_;
    ApiEnvironment environment_ = ApiEnvironment::live;
    std::shared_ptr<const AttemptObservers> attemptObservers_;
    std::shared_ptr<const RequestEngine> engine_;
    std::shared_ptr<const Platform::RequestHeaders> standardHeaders_;
    std::unique_ptr<LastRequest> lastRequest_;
    std::unique_ptr<LastStatus> lastStatus_;
};

}  // namespace Tarnwick_API
