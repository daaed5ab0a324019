#include "ServiceFixture.hpp"

#include <string>
#include <utility>

namespace Tarnwick_API::Testing {

ServiceFixture::ServiceFixture() : service{{.serverCount = 200, .recordRequests = true}} {
    service.start();
    std::ofstream{trustedRoots} << service.caCertificatePem();
    Platform::MainQueue::setMain(queue);
    Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleVersion", std::string{"7100"}}}});
    Platform::Locale::setIdentifierLookup([] { return std::string{"de_DE"}; });
    Keychain::setStore(Platform::makeMemoryKeychainStore());
    use(sessionConfiguration());
    api = makeFacade();
}

Platform::HttpSessionConfiguration ServiceFixture::sessionConfiguration() const {
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = trustedRoots.string();
    configuration.usesProxy = false;
    for (const auto& [address, policy] : configuration.trustPolicies) {
        configuration.connectTo.push_back(address + ":443:127.0.0.1:" + std::to_string(service.port()));
    }
    return configuration;
}

void ServiceFixture::use(Platform::HttpSessionConfiguration configuration) {
    ApiVersion1::setSessionManager(Platform::makeHttpSession(std::move(configuration)));
}

void ServiceFixture::runUntil(const std::function<bool()>& done) {
    while (!done()) {
        ASSERT_TRUE(queue->runUntil([&] { return done() || queue->hasDelayedTasks(); })) << "nothing came";
        if (!done()) {
            queue->runAll();
        }
    }
}

std::shared_ptr<TarnwickApi> ServiceFixture::makeFacade() const {
    const auto& configuration = service.configuration();
    const auto& ids = configuration.filterIds;
    const auto host = service.apiHost();
    return TarnwickApi::create(
        ApiVersion::v1, configuration.consumerKey, configuration.consumerSecret, configuration.partnersId,
        Platform::Uuid::random(), "end-to-end",
        FilterIds{ids.smartServersCandidates, ids.generalCountriesAll, ids.generalServersCandidatesPerCountry,
                  ids.generalServersPerCountry, ids.downloadingCountriesAll, ids.downloadingServersCandidatesPerCountry,
                  ids.streamingCountriesAll, ids.streamingServersCandidatesPerCountry, ids.defaultFavorites},
        ApiUrl{host, host, host, host});
}

void ServiceFixture::createAccount(const std::string& username, const std::string& password) {
    ASSERT_TRUE(service.accounts().create({.username = username, .password = password, .email = username}));
}

Received<Status> ServiceFixture::getStatus() {
    return await<Status>([&](auto completion) { api->getStatus(std::move(completion)); });
}

Received<User> ServiceFixture::signIn(const std::string& username, const std::string& password) {
    return await<User>([&](auto completion) { api->login(username, password, false, std::move(completion)); });
}

}  // namespace Tarnwick_API::Testing
