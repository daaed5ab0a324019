// Restores a session or signs in, lists the countries and signs out, with a coroutine. `sign_in_with_callbacks.cpp`
// does the same. Usage: example_sign_in_with_coroutines HOST[:PORT] CA-FILE NAME PASSWORD

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace Tarnwick_API;

/// Takes what it works with by value, as it goes on after its caller has.
DetachedCoroutine visit(std::shared_ptr<TarnwickApi> api, std::string name, std::string password) {
    auto user = co_await api->restoreSession();
    if (!user) {
        user = co_await api->login(name, password);
    }
    std::cout << "Hello, " << user->username << "!\n";

    const auto countries = co_await api->getCountries(ServerProfile::general);
    // Before that is looked at, so that the account does not keep a device that nobody uses.
    (co_await api->logout()).value();
    std::cout << "Signed out.\n";

    for (const Country& country : countries.value()) {
        std::cout << country.countryCode << ' ' << country.localizedCountryName() << '\n';
    }
    Platform::BuiltInMainQueue::shared()->stop();
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 5) {
        std::cerr << "usage: example_sign_in_with_coroutines HOST[:PORT] CA-FILE NAME PASSWORD\n";
        return EXIT_FAILURE;
    }
    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    // This program has no event loop of its own.
    Platform::MainQueue::setMain(Platform::BuiltInMainQueue::shared());

    const auto api = TarnwickApi::create({
        .consumerKey = "tarnwick-demo-key",
        .consumerSecret = "tarnwick-demo-secret",
        .partnersId = 7,
        // An application keeps its own between runs.
        .uuid = Platform::Uuid::random(),
        .keychainService = "example",
        .filterIds = {.generalCountriesAll = 12},
        .apiUrl = {.live = arguments[1]},
    });
    try {
        visit(api, arguments[3], arguments[4]);
        // What the coroutine lets out, such as the failure of one of its steps, comes out here.
        Platform::BuiltInMainQueue::shared()->run();
    } catch (const OperationFailed& failed) {
        std::cerr << failed.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
