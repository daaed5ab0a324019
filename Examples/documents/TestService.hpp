#pragma once

#include <Tarnwick_API/Tarnwick_API.hpp>

/// What a service for tests needs beside the code that the documents show: its root certificate, and its settings. And
/// a program of the command line the built-in main queue, also where the system has one.
inline Tarnwick_API::TarnwickApiSettings settingsOfTestService(char** words) {
    using namespace Tarnwick_API;
    Platform::MainQueue::setMain(Platform::BuiltInMainQueue::shared());
    auto network = ApiVersion1::defaultSessionConfiguration();
    network.trustedRootsFile = words[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(network));
    return {.consumerKey = "tarnwick-demo-key",
            .consumerSecret = "tarnwick-demo-secret",
            .partnersId = 7,
            .uuid = Platform::Uuid::random(),
            .keychainService = "documents",
            .filterIds = {.smartServersCandidates = 11,
                          .generalCountriesAll = 12,
                          .generalServersCandidatesPerCountry = 13,
                          .defaultFavorites = 41},
            .apiUrl = {.live = words[1]}};
}
