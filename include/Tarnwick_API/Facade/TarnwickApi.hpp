#pragma once

#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Calls/UserField.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiCommunicateable.hpp>
#include <Tarnwick_API/Facade/ApiEnvironment.hpp>
#include <Tarnwick_API/Facade/ApiUrl.hpp>
#include <Tarnwick_API/Facade/ApiVersion.hpp>
#include <Tarnwick_API/Facade/AttemptObservers.hpp>
#include <Tarnwick_API/Facade/FilterIds.hpp>
#include <Tarnwick_API/Facade/RetrySpread.hpp>
#include <Tarnwick_API/Facade/ServerProfile.hpp>
#include <Tarnwick_API/Facade/TarnwickApiSettings.hpp>
#include <Tarnwick_API/Operations/Operation.hpp>
#include <Tarnwick_API/Platform/Application/Uuid.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/Status.hpp>
#include <Tarnwick_API/Records/User.hpp>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// The one object through which an application uses the service.
///
/// Thread: meant for the main thread alone. Nothing here waits for the network. In debug builds of the library, use by
/// two threads at once ends the process with a line that names both operations.
/// Completion: every operation takes one, last. It runs at most once, on the main queue (`Platform::MainQueue`), with a
/// result or an error; with neither when the service answered without usable data. Only when the service is out of
/// reach already at the call is it told so at once, inside the call. A failed transfer is tried again up to five times
/// within about six seconds before `ResponseError::notReachable` is reported (`setRetrySpread` changes that);
/// `observeAttempts` tells why each try failed. On the version-2 backend no completion ever runs.
/// Lifetime: operations under way keep the facade alive; the application may drop it at any time, inside a completion
/// too, and its completions still run.
/// Fork: a process that forks after its first operation keeps to the parent. In the child operations come to no more
/// than `ResponseError::notReachable`; see `Platform::makeHttpSession`.
/// Errors: `ResponseError` for what HTTP says; others where an operation names them. No argument is checked here. What
/// a completion throws is the application's: it passes through to whoever runs the main queue.
class TARNWICK_API_EXPORT TarnwickApi final : public std::enable_shared_from_this<TarnwickApi> {
    struct Key {
        explicit Key() = default;
    };

public:
    /// Makes a facade as `settings` say.
    [[nodiscard]] static std::shared_ptr<TarnwickApi> create(TarnwickApiSettings settings);
    /// The same by position, in environment `live`; set `environment` next if another is meant.
    /// `keychainService`: the name under which the access token is kept. `uuid`: identifies this installation; keep
    /// it between runs.
    [[nodiscard]] static std::shared_ptr<TarnwickApi> create(ApiVersion apiVersion, std::string consumerKey,
                                                             std::string consumerSecret, std::int64_t partnersId,
                                                             const Platform::Uuid& uuid, std::string keychainService,
                                                             const FilterIds& filterIds, ApiUrl apiUrl);

    TarnwickApi() = delete;
    TarnwickApi(Key, ApiVersion apiVersion, std::string consumerKey, std::string consumerSecret,
                std::int64_t partnersId, const Platform::Uuid& uuid, std::string keychainService,
                const FilterIds& filterIds, ApiUrl apiUrl);
    TarnwickApi(const TarnwickApi&) = delete;
    TarnwickApi& operator=(const TarnwickApi&) = delete;
    ~TarnwickApi() = default;

    /// The user of the last successful `login`, `setToken` or `getCurrentUser`; none when signed out. Asks nobody.
    [[nodiscard]] std::optional<User> currentUser() const;
    /// What the last `getStatus` brought; none when it failed. Asks nobody.
    [[nodiscard]] std::optional<Status> currentStatus() const;
    /// The backend's `username`, on purpose no name with version 1 but the access token's text; empty when there is
    /// none. The account's name is `currentUser()->username`.
    [[nodiscard]] std::string username() const;

    /// These six reach a backend only when one is made: assign `version` to make one. The first one's spelling is kept
    /// on purpose.
    [[nodiscard]] const std::string& keychainTokenSerivce() const noexcept { return keychainTokenSerivce_; }
    void setKeychainTokenSerivce(std::string service) { keychainTokenSerivce_ = std::move(service); }
    [[nodiscard]] const std::string& consumerKey() const noexcept { return consumerKey_; }
    void setConsumerKey(std::string consumerKey) { consumerKey_ = std::move(consumerKey); }
    [[nodiscard]] const std::string& consumerSecret() const noexcept { return consumerSecret_; }
    void setConsumerSecret(std::string consumerSecret) { consumerSecret_ = std::move(consumerSecret); }
    [[nodiscard]] std::int64_t partnersId() const noexcept { return partnersId_; }
    void setPartnersId(std::int64_t partnersId) noexcept { partnersId_ = partnersId; }
    [[nodiscard]] const ApiUrl& apiUrl() const noexcept { return apiUrl_; }
    void setApiUrl(ApiUrl apiUrl) { apiUrl_ = std::move(apiUrl); }
    [[nodiscard]] const Platform::Uuid& uid() const noexcept { return uid_; }
    void setUid(const Platform::Uuid& uid) { uid_ = uid; }

    /// Read afresh by every catalogue operation.
    [[nodiscard]] const FilterIds& filters() const noexcept { return filters_; }
    void setFilters(const FilterIds& filters) noexcept { filters_ = filters; }

    /// Which installation of the service is addressed; holds for requests made from now on.
    [[nodiscard]] ApiEnvironment environment() const noexcept { return environment_; }
    void setEnvironment(ApiEnvironment environment);

    [[nodiscard]] std::string baseUrl() const { return api_->baseUrl(); }
    [[nodiscard]] std::string apiHost() const { return api_->apiHost(); }
    [[nodiscard]] std::string fallbackIp() const { return api_->fallbackIp(); }

    /// Whether requests go to a fixed address instead of the host's name; holds for requests made from now on.
    [[nodiscard]] bool useFallbackIp() const { return api_->useFallbackIp(); }
    void setUseFallbackIp(bool useFallbackIp);

    /// How far the pauses before retries are spread; holds for requests made from now on, and for each backend that
    /// `setVersion` makes.
    [[nodiscard]] const RetrySpread& retrySpread() const noexcept { return retrySpread_; }
    void setRetrySpread(RetrySpread spread);

    /// The backend.
    [[nodiscard]] const std::shared_ptr<ApiCommunicateable>& api() const noexcept { return api_; }
    /// Puts another backend in place. Throws std::invalid_argument for none: the facade is never without one.
    void setApi(std::shared_ptr<ApiCommunicateable> api);

    /// Assigning, also the same version again, makes a new backend from the current settings. The old one's
    /// in-memory access token goes with it.
    [[nodiscard]] ApiVersion version() const noexcept { return version_; }
    void setVersion(ApiVersion version);

    /// Tells `handler` what becomes of each attempt to send a request of this facade's, and above all why it failed, as
    /// long as the observation lives. Whatever backend or session takes the place of another, it stays registered.
    ///
    /// Thread: the main one, on which it is to be called. `handler` runs there, before the request is tried again or
    /// its completion called; inside the operation's call when the service is out of reach already then.
    /// Lifetime: let the handler hold its own target, and this facade, weakly. Both it and the observation may outlive
    /// the facade. Errors: what it throws passes through, when the request has gone on.
    [[nodiscard]] AttemptObservers::Observation observeAttempts(AttemptObservers::Handler handler);

    /// A new backend; takes the keychain service and the environment from this facade.
    [[nodiscard]] std::shared_ptr<ApiCommunicateable> apiFactory(ApiVersion version,
                                                                 std::optional<std::string> consumerKey,
                                                                 std::optional<std::string> consumerSecret,
                                                                 std::int64_t partnersId, const Platform::Uuid& uuid,
                                                                 const ApiUrl& apiUrl) const;

    /// Creates an account; does not sign in. Errors: `SignupError::usernameAlreadyExists` for a taken name.
    void createUser(const std::string& username, const std::string& password, Completion<void> onCompletion);

    /// Signs in, stores the access token in the keychain and fetches the user. A failure of either step clears
    /// `currentUser` and posts `ApiNotification::DidLogout`. `qvImport` asks the service to take over an account of
    /// the legacy system. Errors: `LoginError`; a wrong name or password is `ResponseError::unauthorized`.
    void login(const std::string& username, const std::string& password, bool qvImport, Completion<User> onCompletion);

    /// Brings back the session of an earlier run: adopts the access token that the keychain keeps, and fetches the
    /// user. An error leaves everything as it was but for the adopted token, so that an application that starts without
    /// a network is signed in all the same. `ResponseError::unauthorized` says that the service does not take the token
    /// any more: `forgetSession`.
    /// Errors: `SessionError` when there is no token to adopt.
    void restoreSession(Completion<User> onCompletion);

    /// The first half of `restoreSession`: adopts the kept token without asking the service. None when there is one
    /// now; otherwise why not.
    [[nodiscard]] std::optional<SessionError> adoptKeptToken();

    /// What the keychain made of the access token at the last sign-in or sign-out: `success` when the token is kept, or
    /// wiped; none before. What else it is says why a restart will find nobody signed in, or still somebody.
    /// `Keychain::store()->message` has a sentence for it.
    [[nodiscard]] std::optional<Platform::KeychainStatus> tokenKeeping() const;

    /// Signs out without the network: forgets the access token, deletes it from the keychain, clears `currentUser` and
    /// posts `ApiNotification::DidLogout`. The service goes on taking the token for valid. What the keychain said:
    /// `success` when it has no token any more.
    [[nodiscard]] Platform::KeychainStatus forgetSession();

    /// Signs out, and overwrites the token in the keychain with `LoginData::signedOutPlaceholder`. Whatever the
    /// outcome, `currentUser` is cleared and `ApiNotification::DidLogout` posted; after a failure the backend still has
    /// the token. Writes the line "logout v1" to standard output, on purpose.
    /// Errors: when nobody is signed in, a `Platform::DecodingError` ("Not logged in Error."), on purpose too, and at
    /// once, inside the call.
    void logout(Completion<void> onCompletion);

    /// Fetches the user. A failure leaves `currentUser` as it was.
    void getCurrentUser(Completion<User> onCompletion);

    /// Lists countries. `latitude` and `longitude`, in degrees, let the service compute distances; both or neither.
    void getCountries(ServerProfile profile, std::optional<double> latitude, std::optional<double> longitude,
                      Completion<std::vector<Country>> onCompletion);

    /// Lists the servers of one country ("DE").
    void getServers(const std::string& countryCode, std::optional<double> latitude, std::optional<double> longitude,
                    Completion<std::vector<Server>> onCompletion);

    /// Lists servers that the service proposes: of one country; or, without one and for general use, across all.
    /// `serviceId` asks for servers that reach a content service, and counts only together with a country.
    void getCandidateServers(const std::optional<std::string>& countryCode, ServerProfile profile,
                             std::optional<std::int64_t> serviceId, Completion<std::vector<Server>> onCompletion);

    /// Reads one server with its configurations.
    void getServer(std::int64_t id, Completion<Server> onCompletion);

    /// Changes one part of the account; `currentUser` shows it after the next fetch.
    void updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion);

    /// Adopts an access token kept from an earlier run and fetches its user. An error gives the token up. A user that
    /// can't be decoded completes with neither result nor error, and the backend keeps the token. Without a user,
    /// `ApiNotification::DidLogout` is posted and then `currentUser` cleared, in this order.
    void setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion);

    /// Reads the service's status into `currentStatus`.
    void getStatus(Completion<Status> onCompletion);

    /// Reads the user's authentication token. `onCompletion` is never called when the service answers 202 ("Accepted"):
    /// there is neither a token nor an error then.
    void getAuthToken(Completion<std::string> onCompletion);

    /// Lists the devices on which the account is signed in.
    void getDevices(Completion<std::vector<Device>> onCompletion);

    /// Lists the default favourites, servers and countries mixed; none when there are none.
    void getDefaultFavorites(Completion<std::vector<FavoriteEntry>> onCompletion);

    /// The same operations to be waited for in other ways, stopped and given a time: see `Operation`. Each takes, does
    /// and reports what its namesake above does. It keeps the facade alive from the moment it is made.
    /// @{
    [[nodiscard]] Operation<void> createUser(std::string username, std::string password);
    [[nodiscard]] Operation<User> login(std::string username, std::string password, bool qvImport = false);
    [[nodiscard]] Operation<User> restoreSession();
    [[nodiscard]] Operation<void> logout();
    [[nodiscard]] Operation<User> getCurrentUser();
    [[nodiscard]] Operation<std::vector<Country>> getCountries(ServerProfile profile,
                                                               std::optional<double> latitude = std::nullopt,
                                                               std::optional<double> longitude = std::nullopt);
    [[nodiscard]] Operation<std::vector<Server>> getServers(std::string countryCode,
                                                            std::optional<double> latitude = std::nullopt,
                                                            std::optional<double> longitude = std::nullopt);
    [[nodiscard]] Operation<std::vector<Server>> getCandidateServers(
        std::optional<std::string> countryCode, ServerProfile profile,
        std::optional<std::int64_t> serviceId = std::nullopt);
    [[nodiscard]] Operation<Server> getServer(std::int64_t id);
    [[nodiscard]] Operation<void> updateUser(UserField field, std::string newValue);
    [[nodiscard]] Operation<User> setToken(std::string token, std::string secret);
    [[nodiscard]] Operation<Status> getStatus();
    /// @}
    /// Ends without a value where the other one is never told.
    [[nodiscard]] Operation<std::string> getAuthToken();
    /// As their namesakes.
    /// @{
    [[nodiscard]] Operation<std::vector<Device>> getDevices();
    [[nodiscard]] Operation<std::vector<FavoriteEntry>> getDefaultFavorites();
    /// @}

private:
    class TARNWICK_API_NO_EXPORT Use;

    void postDidLogout();
    /// Calls `finish` also when an observer throws, which then goes on.
    template <typename Finish>
    void postDidLogoutAnd(const Finish& finish);
    template <typename Finish>
    void endSessionAnd(const Finish& finish);

    std::optional<User> internalCurrentUser_;
    std::optional<Status> internalCurrentStatus_;
    std::string keychainTokenSerivce_;
    std::string consumerKey_;
    std::string consumerSecret_;
    std::int64_t partnersId_;
    ApiUrl apiUrl_;
    FilterIds filters_;
    ApiEnvironment environment_ = ApiEnvironment::live;
    bool useFallbackIp_ = false;
    RetrySpread retrySpread_;
    Platform::Uuid uid_;
    ApiVersion version_;
    std::shared_ptr<AttemptObservers> attemptObservers_ = std::make_shared<AttemptObservers>();
    std::shared_ptr<ApiCommunicateable> api_;
    /// Who is inside the facade.
    mutable std::atomic<std::thread::id> user_ = std::thread::id{};
    mutable std::atomic<const char*> usedFor_ = nullptr;
};

}  // namespace Tarnwick_API
