#pragma once

#include <Tarnwick_API/Calls/ApiResult.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Calls/SessionError.hpp>
#include <Tarnwick_API/Calls/UserField.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiEnvironment.hpp>
#include <Tarnwick_API/Facade/AttemptObservers.hpp>
#include <Tarnwick_API/Facade/RetrySpread.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/Status.hpp>
#include <Tarnwick_API/Records/User.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// A backend: one generation of the service's API as the facade sees it. An application may bring its own, for its
/// tests say, and give it to `TarnwickApi::setApi`. The spelling of the name is kept on purpose.
///
/// Thread: meant for the main thread alone, on which the completions run too. An operation returns nothing and calls
/// its completion at most once.
/// Errors: an operation reports them through its completion. An override had better throw nothing: the facade catches
/// nothing, so that an exception reaches the application's own call, or, where the facade goes on after a first answer
/// (`currentUser` after `login`), whoever delivers that answer; the application's completion is then not called.
class TARNWICK_API_EXPORT ApiCommunicateable {
public:
    ApiCommunicateable() = default;
    ApiCommunicateable(const ApiCommunicateable&) = delete;
    ApiCommunicateable& operator=(const ApiCommunicateable&) = delete;
    virtual ~ApiCommunicateable() = default;

    /// Who is signed in, in the backend's own terms: with version 1 no name but the access token's text. None when
    /// nobody is.
    [[nodiscard]] virtual std::optional<std::string> username() const = 0;

    [[nodiscard]] virtual ApiEnvironment environment() const = 0;
    virtual void setEnvironment(ApiEnvironment environment) = 0;

    /// The host that requests name.
    [[nodiscard]] virtual std::string apiHost() const = 0;
    [[nodiscard]] virtual std::string baseUrl() const = 0;
    /// The address that takes the host's place in fallback mode.
    [[nodiscard]] virtual std::string fallbackIp() const = 0;

    [[nodiscard]] virtual bool useFallbackIp() const = 0;
    virtual void setUseFallbackIp(bool useFallbackIp) = 0;

    /// How far pauses before retries are spread; holds for requests made from now on. A backend that tries nothing
    /// again leaves this as it is.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): an override keeps it
    virtual void setRetrySpread(RetrySpread /*spread*/) {}

    /// Whom to tell what becomes of requests made from now on; none for nobody. Given by the facade to each backend
    /// that it gets. A backend that sends nothing has nothing to tell, and leaves this as it is.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): an override keeps it
    virtual void setAttemptObservers(std::shared_ptr<const AttemptObservers> /*observers*/) {}

    /// Takes over the access token that the keychain keeps from an earlier sign-in, without asking the service. None
    /// when it has one now; otherwise why it has none, and what it had before stays.
    [[nodiscard]] virtual std::optional<SessionError> adoptKeptToken() {
        return SessionError{SessionError::nobodySignedIn};
    }
    /// Forgets the access token, here and in the keychain, without telling the service. What the keychain said:
    /// `success` when it has none any more.
    [[nodiscard]] virtual Platform::KeychainStatus forgetToken() { return Platform::KeychainStatus::success; }
    /// What the keychain said when the access token was written to it, or wiped from it, last; none before.
    [[nodiscard]] virtual std::optional<Platform::KeychainStatus> tokenKeeping() const { return std::nullopt; }

    /// The facade's operations without the state that it keeps, with the filter that it has chosen: see `TarnwickApi`.
    /// `login` completes once there is a token, before any user is known.
    /// @{
    virtual void currentUser(Completion<User> onCompletion) = 0;
    virtual void login(const std::string& username, const std::string& password, bool qvImport,
                       Completion<void> onCompletion) = 0;
    virtual void logout(Completion<void> onCompletion) = 0;
    /// @}
    /// Adopts a stored access token and fetches its user. An error gives the token up. A user that can't be decoded
    /// completes with neither result nor error, and the token stays.
    virtual void setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) = 0;
    /// As above.
    /// @{
    virtual void getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                              Completion<std::vector<Country>> onCompletion) = 0;
    virtual void getServers(std::int64_t filterId, const std::string& countryCode, std::optional<double> latitude,
                            std::optional<double> longitude, Completion<std::vector<Server>> onCompletion) = 0;
    virtual void getServer(std::int64_t id, Completion<Server> onCompletion) = 0;
    virtual void getCandidateServers(std::int64_t filterId, const std::optional<std::string>& countryCode,
                                     std::optional<std::int64_t> serviceId,
                                     Completion<std::vector<Server>> onCompletion) = 0;
    virtual void updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion) = 0;
    virtual void createUser(const std::string& username, const std::string& password,
                            Completion<void> onCompletion) = 0;
    virtual void getStatus(Completion<Status> onCompletion) = 0;
    /// @}
    /// Never calls back when the service answers 202 ("Accepted"): there is neither a token nor an error then.
    virtual void getAuthToken(Completion<std::string> onCompletion) = 0;
    /// As above.
    /// @{
    virtual void getDevices(Completion<std::vector<Device>> onCompletion) = 0;
    virtual void getDefaultFavorites(std::int64_t filterId, Completion<std::vector<FavoriteEntry>> onCompletion) = 0;
    /// @}

    /// The request primitive that the operations stand on. `retryCount` is the number of attempts already made.
    virtual void sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                             Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                             Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) = 0;
    /// As above, with no attempt made yet.
    void sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                     Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                     Platform::HttpMethod method, RequestCompletion onCompletion) {
        sendRequest(url, parameters, encoding, headers, method, 0, std::move(onCompletion));
    }
};

}  // namespace Tarnwick_API
