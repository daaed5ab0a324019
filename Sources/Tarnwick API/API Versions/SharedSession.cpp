#include "SharedSession.hpp"

#include <Platform/Application/ProcessWide.hpp>

#include <utility>

#include "BuildConstants.hpp"

namespace Tarnwick_API {

namespace {

constexpr Platform::ProcessWide session{&Platform::ProcessValues::sharedSession};

}  // namespace

std::shared_ptr<Platform::HttpSession> SharedSession::get() {
    return session.getOr([] { return Platform::makeHttpSession(defaultConfiguration()); });
}

void SharedSession::set(std::shared_ptr<Platform::HttpSession> replacement) {
    session.set(std::move(replacement));
}

Platform::HttpSessionConfiguration SharedSession::defaultConfiguration() {
    Platform::HttpSessionConfiguration configuration;
    // The certificate names the API host, not the address that stands in for it.
    configuration.trustPolicies.emplace(BuildConstants::liveBetaFallbackIp, Platform::HostValidation::chainOnly);
    return configuration;
}

}  // namespace Tarnwick_API
