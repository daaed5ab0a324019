#include "Client/Client.hpp"

#include <Tarnwick_API/Tarnwick_API.hpp>

#include "Configuration/InstallationId.hpp"
#include "Configuration/UserFolders.hpp"
#include "Keychain/KeptItem.hpp"
#include "Terminal/WaitingLine.hpp"

#include <chrono>
#include <string_view>

namespace TarnwickClient {

using Tarnwick_API::ApiError;
using Tarnwick_API::ApiVersion1;
using Tarnwick_API::Completion;
using Tarnwick_API::Platform::KeychainStatus;

namespace {

Failure tokenNotWiped(const std::string& what, KeychainStatus status) {
    return {ExitStatus::local, "tokenNotWiped", what + Failure::keychain(status).what()};
}

std::chrono::milliseconds milliseconds(double seconds) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>{seconds});
}

Tarnwick_API::Platform::Uuid installationId(const Settings& settings) {
    if (const auto id = Tarnwick_API::Platform::Uuid::fromString(settings.installationId)) {
        return *id;
    }
    const auto folder = stateFolder();
    if (folder.empty()) {
        throw Failure::usage("There is no home folder to keep the installation id in: set TARNWICK_INSTALLATION_ID.");
    }
    return keptInstallationId(folder / "installation-id");
}

Tarnwick_API::FilterIds filterIds(const Settings& settings) {
    const auto number = [&](Filter filter) { return settings.filters[static_cast<std::size_t>(filter)].value_or(0); };
    return {number(Filter::smartServersCandidates),
            number(Filter::generalCountriesAll),
            number(Filter::generalServersCandidatesPerCountry),
            number(Filter::generalServersPerCountry),
            number(Filter::downloadingCountriesAll),
            number(Filter::downloadingServersCandidatesPerCountry),
            number(Filter::streamingCountriesAll),
            number(Filter::streamingServersCandidatesPerCountry),
            number(Filter::defaultFavorites)};
}

Tarnwick_API::ApiUrl apiUrl(const Settings& settings) {
    using Tarnwick_API::ApiEnvironment;
    const auto host = [&](ApiEnvironment environment) { return settings.hosts[static_cast<std::size_t>(environment)]; };
    return {host(ApiEnvironment::live), host(ApiEnvironment::beta), host(ApiEnvironment::dev),
            host(ApiEnvironment::staging)};
}

std::shared_ptr<Tarnwick_API::Platform::HttpSession> makeSession(const Settings& settings) {
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.idleTimeout = milliseconds(settings.idleTimeout);
    if (!settings.caFile.empty()) {
        configuration.trustedRootsFile = settings.caFile;
    }
    configuration.connectTo = settings.connectTo;
    if (!settings.cacheFolder.empty()) {
        constexpr std::size_t memory = std::size_t{4} << 20U;
        constexpr std::size_t disk = std::size_t{64} << 20U;
        configuration.cache = std::make_shared<Tarnwick_API::CustomUrlCache>(memory, disk, settings.cacheFolder);
    }
    return Tarnwick_API::Platform::makeHttpSession(std::move(configuration));
}

}  // namespace

Client::Client(const Settings& settings)
    : settings_{settings}, queue_{std::make_shared<Tarnwick_API::Platform::BuiltInMainQueue>()} {
    if (!settings.clickId.empty()) {
        Tarnwick_API::Platform::Preferences::setLookup([clickId = settings.clickId](std::string_view key) {
            return key == "cid" ? std::optional{clickId} : std::nullopt;
        });
    }
    Tarnwick_API::Platform::MainQueue::setMain(queue_);
    ApiVersion1::setSessionManager(makeSession(settings));
    api_ = Tarnwick_API::TarnwickApi::create(settings.apiVersion, settings.consumerKey, settings.consumerSecret,
                                             settings.partnerId.value_or(0), installationId(settings),
                                             settings.keychainService, filterIds(settings), apiUrl(settings));
    api_->setEnvironment(settings.environment);
    api_->setUseFallbackIp(settings.fallback);
    observation_ = api_->observeAttempts([this](const auto& attempt) { transfers_.note(attempt); });
}

void Client::requireSignIn() const {
    if (api_->adoptKeptToken()) {
        const auto status = keptItem(settings_.keychainService).status;
        throw status == KeychainStatus::success ? Failure::notSignedIn() : Failure::keychain(status);
    }
}

void Client::requireKept() const {
    const auto status = api_->tokenKeeping().value_or(KeychainStatus::success);
    if (status != KeychainStatus::success) {
        throw Failure{
            ExitStatus::local, "tokenNotKept",
            std::string{"Signed in, but the access token could not be kept: "} + Failure::keychain(status).what()};
    }
}

void Client::adoptStoredToken() const {
    static_cast<void>(api_->adoptKeptToken());
}

void Client::forgetStoredToken() const {
    const auto status = api_->forgetSession();
    if (status != KeychainStatus::success) {
        throw tokenNotWiped("The session had ended already, but the access token could not be deleted: ", status);
    }
}

void Client::requireWiped() const {
    const auto item = keptItem(settings_.keychainService);
    if (item.status != KeychainStatus::success) {
        throw tokenNotWiped("Signed out, but the keychain may still have the access token: ", item.status);
    }
    if (item.kind == KeptItem::Kind::token) {
        throw Failure{ExitStatus::local, "tokenNotWiped",
                      "Signed out, but the keychain still has the access token, which is worth nothing any more."};
    }
}

std::optional<ApiError> Client::error(const std::string& doing, const std::function<void(Completion<void>)>& start) {
    const auto adapted = [&](Completion<bool> onCompletion) {
        start([onCompletion = std::move(onCompletion)](std::optional<ApiError> error) {
            onCompletion(true, std::move(error));
        });
    };
    return outcome<bool>(doing, adapted).error;
}

void Client::run(const std::string& doing, const std::function<void(Completion<void>)>& start) {
    if (const auto refusal = error(doing, start)) {
        throw failure(*refusal);
    }
}

void Client::wait(const std::string& doing, const std::function<bool()>& isDone) {
    const auto isLate = std::make_shared<bool>(false);
    queue_->after(milliseconds(settings_.timeout), [isLate] { *isLate = true; });

    static constexpr std::chrono::milliseconds refresh{250};
    WaitingLine line{doing, !settings_.verbose};
    const auto isWaiting = std::make_shared<bool>(true);
    const auto draw = std::make_shared<std::function<void()>>();
    *draw = [this, &line, isWaiting, weakDraw = std::weak_ptr{draw}] {
        if (const auto again = weakDraw.lock(); again && *isWaiting) {
            line.update(transfers_.attempt, transfers_.lastError);
            queue_->after(refresh, *again);
        }
    };
    if (line.isShown()) {
        queue_->after(refresh, *draw);
    }
    queue_->runUntil([&] { return isDone() || *isLate; });
    *isWaiting = false;
    if (!isDone()) {
        const auto cause = transfers_.lastError.empty() ? "" : " (" + transfers_.lastError + ")";
        throw Failure{ExitStatus::noAnswer, "timedOut", "No answer from the service in time" + cause + "."};
    }
}

}  // namespace TarnwickClient
