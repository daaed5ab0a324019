// The code of docs/GETTING_STARTED.md. Usage: document_getting_started HOST[:PORT] CA-FILE NAME PASSWORD

#include <Tarnwick_API/Tarnwick_API.hpp>

#include "TestService.hpp"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace Tarnwick_API;

/// The installation's identifier, made at the first start and kept in `file`.
Platform::Uuid installationId(const std::filesystem::path& file) {
    std::string text;
    std::ifstream{file} >> text;
    if (const auto kept = Platform::Uuid::fromString(text)) {
        return *kept;
    }
    const auto made = Platform::Uuid::random();
    std::filesystem::create_directories(file.parent_path());
    std::ofstream{file} << made.uuidString() << '\n';
    return made;
}

void showUser(const User& user) {
    std::cout << "Hello, " << user.username << "!\n";
}
void showSignIn(const char* why) {
    std::cout << "Please sign in: " << why << '\n';
}
void showOffline() {
    std::cout << "Signed in, but offline.\n";
}

DetachedCoroutine start(std::shared_ptr<TarnwickApi> api) {
    const auto user = co_await api->restoreSession();
    if (user) {
        showUser(*user);
    } else if (const auto* why = user.failure().as<SessionError>()) {
        showSignIn(*why == SessionError::keychainLocked ? "your keychain is locked" : "nobody is signed in");
    } else if (user.failure().error() == ApiError{ResponseError::unauthorized()}) {
        static_cast<void>(api->forgetSession());
        showSignIn("you have been signed out elsewhere");
    } else {
        showOffline();
    }
}

DetachedCoroutine signIn(std::shared_ptr<TarnwickApi> api, std::string name, std::string password) {
    if (const auto user = co_await api->login(name, password)) {
        showUser(*user);
        if (api->tokenKeeping() != Platform::KeychainStatus::success) {
            std::cout << "You will have to sign in again at the next start.\n";
        }
    } else {
        showSignIn(std::string{user.failure().localizedDescription()}.c_str());
    }
}

/// Like a start of the application, with what happens in it before it is closed.
template <typename Happens>
void run(TarnwickApiSettings settings, const std::filesystem::path& folder, const Happens& happens) {
    settings.uuid = installationId(folder / "installation-id");
    for (const std::string& fault : settings.faults()) {
        std::cerr << "Settings: " << fault << '\n';
    }
    const auto api = TarnwickApi::create(settings);
    happens(api);
    // Whatever has begun keeps the facade.
    Platform::BuiltInMainQueue::shared()->runUntil([&] { return api.use_count() == 1; });
}

/// What a release asks of the certificate at the fallback address.
void trustTheServiceAlone(const std::shared_ptr<TarnwickApi>& api, const std::string& publicKeysOfService) {
    auto network = ApiVersion1::defaultSessionConfiguration();
    network.trustPolicies[api->fallbackIp()] = Platform::HostValidation::hostHeader;
    network.pinnedPublicKeys[api->fallbackIp()] = publicKeysOfService;
    ApiVersion1::setSessionManager(Platform::makeHttpSession(network));
}

}  // namespace

int main(int, char** words) {
    const auto settings = settingsOfTestService(words);
    const std::filesystem::path folder{std::string{words[2]} + ".state"};
    run(settings, folder, [](const auto& api) { start(api); });
    run(settings, folder, [&](const auto& api) { signIn(api, words[3], words[4]); });
    run(settings, folder, [](const auto& api) { start(api); });
    trustTheServiceAlone(TarnwickApi::create(settings), "sha256//47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
}
