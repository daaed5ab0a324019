#include <Tarnwick_API/Tarnwick_API.hpp>

#include <iostream>

using namespace Tarnwick_API;

DetachedCoroutine visit(std::shared_ptr<TarnwickApi> api, std::string name, std::string password) {
    const User user = (co_await api->login(name, password)).value();
    std::cout << "Hello, " << user.username << "!\n";
    for (const Country& country : (co_await api->getCountries(ServerProfile::general)).value()) {
        std::cout << country.countryCode << ' ' << country.localizedCountryName() << '\n';
    }
    (co_await api->logout()).value();
    Platform::BuiltInMainQueue::shared()->stop();
}

int main(int count, char** words) try {
    if (count != 5) {
        throw std::invalid_argument{"usage: first_program HOST ROOTS-FILE NAME PASSWORD"};
    }
    Platform::MainQueue::setMain(Platform::BuiltInMainQueue::shared());
    auto network = ApiVersion1::defaultSessionConfiguration();
    network.trustedRootsFile = words[2];  // a test service has a root certificate of its own
    ApiVersion1::setSessionManager(Platform::makeHttpSession(network));
    visit(TarnwickApi::create({.consumerKey = "tarnwick-demo-key",
                               .consumerSecret = "tarnwick-demo-secret",
                               .partnersId = 7,
                               .uuid = Platform::Uuid::random(),  // an application makes and keeps one
                               .keychainService = "first-program",
                               .filterIds = {.generalCountriesAll = 12},
                               .apiUrl = {.live = words[1]}}),
          words[3], words[4]);
    Platform::BuiltInMainQueue::shared()->run();
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
