#include <Tarnwick_API/Backends/ApiVersion2.hpp>

#include <utility>

#include "BuildConstants.hpp"
#include "DeviceRegistration.hpp"

namespace Tarnwick_API {

ApiVersion2::ApiVersion2(std::optional<std::string> consumerKey, std::optional<std::string> consumerSecret,
                         const Platform::Uuid& uuid)
    : consumerKey_{std::move(consumerKey).value_or(std::string{})},
      consumerSecret_{std::move(consumerSecret).value_or(std::string{})},
      uuid_{uuid} {
}

std::shared_ptr<Platform::HttpSession> ApiVersion2::sessionManager(std::string_view /*ignored*/) {
    // Never destroyed: requests may be under way when the process ends.
    static const auto& session =
        *std::make_unique<std::shared_ptr<Platform::HttpSession>>(Platform::makeHttpSession({})).release();
    return session;
}

std::string ApiVersion2::baseUrl() const {
    return BuildConstants::version2DevelopmentUrl;
}

void ApiVersion2::login(const std::string& username, const std::string& password, bool /*qvImport*/,
                        Completion<void> /*onCompletion*/) {
    // Prepared and dropped, on purpose: nothing serves this API generation yet.
    static_cast<void>(DeviceRegistration::prepare(baseUrl(), consumerKey_, uuid_, username, password));
}

void ApiVersion2::currentUser(Completion<User> /*onCompletion*/) {
}

void ApiVersion2::logout(Completion<void> /*onCompletion*/) {
}

void ApiVersion2::setToken(const std::string& /*token*/, const std::string& /*secret*/,
                           Completion<User> /*onCompletion*/) {
}

void ApiVersion2::getCountries(std::int64_t /*filterId*/, std::optional<double> /*latitude*/,
                               std::optional<double> /*longitude*/, Completion<std::vector<Country>> /*onCompletion*/) {
}

void ApiVersion2::getCountries(const Completion<std::vector<Country>>& /*onCompletion*/) {
}

void ApiVersion2::getServers(std::int64_t /*filterId*/, const std::string& /*countryCode*/,
                             std::optional<double> /*latitude*/, std::optional<double> /*longitude*/,
                             Completion<std::vector<Server>> /*onCompletion*/) {
}

void ApiVersion2::getServer(std::int64_t /*id*/, Completion<Server> /*onCompletion*/) {
}

void ApiVersion2::getCandidateServers(std::int64_t /*filterId*/, const std::optional<std::string>& /*countryCode*/,
                                      std::optional<std::int64_t> /*serviceId*/,
                                      Completion<std::vector<Server>> /*onCompletion*/) {
}

void ApiVersion2::updateUser(UserField /*field*/, const std::string& /*newValue*/, Completion<void> /*onCompletion*/) {
}

void ApiVersion2::createUser(const std::string& /*username*/, const std::string& /*password*/,
                             Completion<void> /*onCompletion*/) {
}

void ApiVersion2::getStatus(Completion<Status> /*onCompletion*/) {
}

void ApiVersion2::getAuthToken(Completion<std::string> /*onCompletion*/) {
}

void ApiVersion2::getDevices(Completion<std::vector<Device>> /*onCompletion*/) {
}

void ApiVersion2::getDefaultFavorites(std::int64_t /*filterId*/,
                                      Completion<std::vector<FavoriteEntry>> /*onCompletion*/) {
}

void ApiVersion2::sendRequest(const Platform::Url& /*url*/, const Platform::Parameters& /*parameters*/,
                              Platform::ParameterEncoding /*encoding*/, const Platform::HttpHeaders& /*headers*/,
                              Platform::HttpMethod /*method*/, std::int64_t /*retryCount*/,
                              RequestCompletion /*onCompletion*/) {
}

}  // namespace Tarnwick_API
