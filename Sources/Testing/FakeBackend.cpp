#include <Tarnwick_API/Testing/FakeBackend.hpp>

#include <Tarnwick_API/Calls/ApiResult.hpp>

#include <utility>

namespace Tarnwick_API::Testing {

namespace {

/// Turns the interface's calls into those of the fake's members. A class of its own, as a member and a function of one
/// class can't have the same name.
class AnsweringBackend final : public FakeBackend {
public:
    [[nodiscard]] std::optional<std::string> username() const override { return FakeBackend::username; }
    [[nodiscard]] ApiEnvironment environment() const override { return FakeBackend::environment; }
    void setEnvironment(ApiEnvironment environment) override { FakeBackend::environment = environment; }
    [[nodiscard]] std::string apiHost() const override { return FakeBackend::apiHost; }
    [[nodiscard]] std::string baseUrl() const override { return FakeBackend::baseUrl; }
    [[nodiscard]] std::string fallbackIp() const override { return FakeBackend::fallbackIp; }
    [[nodiscard]] bool useFallbackIp() const override { return FakeBackend::useFallbackIp; }
    void setUseFallbackIp(bool useFallbackIp) override { FakeBackend::useFallbackIp = useFallbackIp; }
    void setAttemptObservers(std::shared_ptr<const AttemptObservers> observers) override {
        attemptObservers = std::move(observers);
    }
    [[nodiscard]] std::optional<SessionError> adoptKeptToken() override { return FakeBackend::adoptKeptToken; }
    [[nodiscard]] Platform::KeychainStatus forgetToken() override { return FakeBackend::forgetToken; }
    [[nodiscard]] std::optional<Platform::KeychainStatus> tokenKeeping() const override {
        return FakeBackend::tokenKeeping;
    }

    void currentUser(Completion<User> onCompletion) override { FakeBackend::currentUser({}, std::move(onCompletion)); }
    void login(const std::string& username, const std::string& password, bool qvImport,
               Completion<void> onCompletion) override {
        FakeBackend::login({username, password, qvImport}, std::move(onCompletion));
    }
    void logout(Completion<void> onCompletion) override { FakeBackend::logout({}, std::move(onCompletion)); }
    void setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) override {
        FakeBackend::setToken({token, secret}, std::move(onCompletion));
    }
    void getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                      Completion<std::vector<Country>> onCompletion) override {
        FakeBackend::getCountries({filterId, latitude, longitude}, std::move(onCompletion));
    }
    void getServers(std::int64_t filterId, const std::string& countryCode, std::optional<double> latitude,
                    std::optional<double> longitude, Completion<std::vector<Server>> onCompletion) override {
        FakeBackend::getServers({filterId, countryCode, latitude, longitude}, std::move(onCompletion));
    }
    void getServer(std::int64_t id, Completion<Server> onCompletion) override {
        FakeBackend::getServer({id}, std::move(onCompletion));
    }
    void getCandidateServers(std::int64_t filterId, const std::optional<std::string>& countryCode,
                             std::optional<std::int64_t> serviceId,
                             Completion<std::vector<Server>> onCompletion) override {
        FakeBackend::getCandidateServers({filterId, countryCode, serviceId}, std::move(onCompletion));
    }
    void updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion) override {
        FakeBackend::updateUser({field, newValue}, std::move(onCompletion));
    }
    void createUser(const std::string& username, const std::string& password, Completion<void> onCompletion) override {
        FakeBackend::createUser({username, password}, std::move(onCompletion));
    }
    void getStatus(Completion<Status> onCompletion) override { FakeBackend::getStatus({}, std::move(onCompletion)); }
    void getAuthToken(Completion<std::string> onCompletion) override {
        FakeBackend::getAuthToken({}, std::move(onCompletion));
    }
    void getDevices(Completion<std::vector<Device>> onCompletion) override {
        FakeBackend::getDevices({}, std::move(onCompletion));
    }
    void getDefaultFavorites(std::int64_t filterId, Completion<std::vector<FavoriteEntry>> onCompletion) override {
        FakeBackend::getDefaultFavorites({filterId}, std::move(onCompletion));
    }
    void sendRequest(const Platform::Url& url, const Platform::Parameters& parameters,
                     Platform::ParameterEncoding encoding, const Platform::HttpHeaders& headers,
                     Platform::HttpMethod method, std::int64_t retryCount, RequestCompletion onCompletion) override {
        FakeBackend::sendRequest({url, parameters, encoding, headers, method, retryCount},
                                 [onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body,
                                                                          std::optional<ApiError> error) {
                                     if (onCompletion) {
                                         constexpr std::int64_t good = 200;
                                         const auto status = error ? 0 : good;
                                         onCompletion(std::move(body), {status, std::move(error)});
                                     }
                                 });
    }
};

}  // namespace

std::shared_ptr<FakeBackend> FakeBackend::create() {
    return std::make_shared<AnsweringBackend>();
}

void FakeBackend::dropHeld() {
    const auto drop = [](auto&... operations) { (operations.drop(), ...); };
    drop(currentUser, login, logout, setToken, getCountries, getServers, getServer, getCandidateServers, updateUser,
         createUser, getStatus, getAuthToken, getDevices, getDefaultFavorites, sendRequest);
}

}  // namespace Tarnwick_API::Testing
