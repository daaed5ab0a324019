#include <Tarnwick_API/API Versions/ApiVersion1.hpp>

#include <mutex>
#include <utility>

namespace Tarnwick_API {

namespace {

struct SharedSession {
    std::mutex mutex;
    std::shared_ptr<Platform::HttpSession> session;
};

// Never destroyed: requests may be under way when the process ends.
SharedSession& sharedSession() {
    static auto& shared = *std::make_unique<SharedSession>().release();
    return shared;
}

}  // namespace

std::shared_ptr<Platform::HttpSession> ApiVersion1::sessionManager() {
    auto& shared = sharedSession();
    const std::lock_guard lock{shared.mutex};
    if (!shared.session) {
        shared.session = Platform::makeHttpSession(defaultSessionConfiguration());
    }
    return shared.session;
}

void ApiVersion1::setSessionManager(std::shared_ptr<Platform::HttpSession> session) {
    auto& shared = sharedSession();
    {
        const std::lock_guard lock{shared.mutex};
        shared.session.swap(session);
    }
    // The replaced session ends its requests outside the lock.
}

Platform::HttpSessionConfiguration ApiVersion1::defaultSessionConfiguration() {
    Platform::HttpSessionConfiguration configuration;
    // The certificate names the API host, not the address that stands in for it.
    configuration.trustPolicies.emplace(TARNWICK_FALLBACK_LIVE_BETA, Platform::HostValidation::chainOnly);
    return configuration;
}

}  // namespace Tarnwick_API
