#include "ServiceAccess.hpp"

#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

namespace Benchmarks {

using namespace Tarnwick_API;

std::vector<std::string> ServiceAccess::accounts() {
    const auto withPassword = [](const std::string& name) { return name + ":" + password; };
    std::vector<std::string> accounts{withPassword(reader)};
    for (std::size_t number = 0; number < visitors; ++number) {
        accounts.push_back(withPassword(visitor(number)));
    }
    return accounts;
}

void ServiceAccess::install() const {
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = caFile;
    configuration.usesProxy = false;
    if (proxyPort != 0) {
        configuration.connectTo = {host + ":127.0.0.1:" + std::to_string(proxyPort)};
    }
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    Keychain::setStore(Platform::makeMemoryKeychainStore());
}

std::shared_ptr<TarnwickApi> ServiceAccess::makeFacade(const std::string& account) const {
    return TarnwickApi::create({.consumerKey = "tarnwick-demo-key",
                                .consumerSecret = "tarnwick-demo-secret",
                                .partnersId = 7,
                                .uuid = Platform::Uuid::random(),
                                .keychainService = "soak " + account,
                                .filterIds = {.smartServersCandidates = 11,
                                              .generalCountriesAll = 12,
                                              .generalServersCandidatesPerCountry = 13,
                                              .generalServersPerCountry = 14,
                                              .downloadingCountriesAll = 22,
                                              .downloadingServersCandidatesPerCountry = 23,
                                              .streamingCountriesAll = 32,
                                              .streamingServersCandidatesPerCountry = 33,
                                              .defaultFavorites = 41},
                                .apiUrl = {.live = host}});
}

}  // namespace Benchmarks
