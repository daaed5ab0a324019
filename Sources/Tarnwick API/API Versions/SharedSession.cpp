#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include <Platform/Application/ProcessWide.hpp>

#include <utility>

namespace Tarnwick_API {

namespace {

constexpr Platform::ProcessWide sharedSession{&Platform::ProcessValues::sharedSession};

}  // namespace

std::shared_ptr<Platform::HttpSession> ApiVersion1::sessionManager() {
    return sharedSession.getOr([] { return Platform::makeHttpSession(defaultSessionConfiguration()); });
}

void ApiVersion1::setSessionManager(std::shared_ptr<Platform::HttpSession> session) {
    sharedSession.set(std::move(session));
}

Platform::HttpSessionConfiguration ApiVersion1::defaultSessionConfiguration() {
    Platform::HttpSessionConfiguration configuration;
    // The certificate names the API host, not the address that stands in for it.
    configuration.trustPolicies.emplace(TARNWICK_FALLBACK_LIVE_BETA, Platform::HostValidation::chainOnly);
    return configuration;
}

}  // namespace Tarnwick_API
