// The code of docs/CHOOSING_A_SERVER.md. Usage: document_choosing_a_server HOST[:PORT] CA-FILE NAME PASSWORD

#include <Tarnwick_API/Tarnwick_API.hpp>

#include "TestService.hpp"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace Tarnwick_API;

constexpr double unknown = std::numeric_limits<double>::infinity();

/// From 0, nobody there, to 1, full; what the service's numbers don't tell sorts last.
double loadOf(const Server& server) {
    const auto users = server.statistics.currentUsers;
    const auto places = server.statistics.maxUsers;
    return users >= 0 && places > 0 ? static_cast<double>(users) / static_cast<double>(places) : unknown;
}

double distanceOf(const Country& country) {
    const double distance = country.distance.value_or(unknown);
    return std::isnan(distance) ? unknown : distance;
}

DetachedCoroutine visit(std::shared_ptr<TarnwickApi> api, std::string name, std::string password) {
    (co_await api->login(name, password)).value();

    const auto status = (co_await api->getStatus()).value();
    const Location here = status.location.value_or(Location{});
    auto countries = (co_await api->getCountries(ServerProfile::general, here.latitude, here.longitude)).value();
    std::ranges::sort(countries, {}, distanceOf);

    const auto candidates =
        (co_await api->getCandidateServers(countries.at(0).countryCode, ServerProfile::general)).value();
    const auto best = std::ranges::min_element(candidates, {}, loadOf);
    if (best != candidates.end()) {
        const Server server = (co_await api->getServer(best->id)).value();
        std::cout << server.hostname << ", " << server.configurations.size() << " ways to connect\n";
    }

    for (const FavoriteEntry& favorite : (co_await api->getDefaultFavorites()).value()) {
        if (const auto* server = std::get_if<Server>(&favorite)) {
            std::cout << "Server " << server->name << '\n';
        } else if (const auto* country = std::get_if<Country>(&favorite)) {
            std::cout << "Country " << country->localizedCountryName() << '\n';
        }
    }

    (co_await api->logout()).value();
    Platform::BuiltInMainQueue::shared()->stop();
}

}  // namespace

int main(int, char** words) try {
    visit(TarnwickApi::create(settingsOfTestService(words)), words[3], words[4]);
    Platform::BuiltInMainQueue::shared()->run();
} catch (const OperationFailed& failed) {
    std::cerr << failed.what() << '\n';
    return 1;
}
