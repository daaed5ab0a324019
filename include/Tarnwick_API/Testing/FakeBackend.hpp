#pragma once

#include <Tarnwick_API/Calls/SessionError.hpp>
#include <Tarnwick_API/Calls/UserField.hpp>
#include <Tarnwick_API/Facade/ApiCommunicateable.hpp>
#include <Tarnwick_API/Facade/ApiEnvironment.hpp>
#include <Tarnwick_API/Facade/AttemptObservers.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/Status.hpp>
#include <Tarnwick_API/Records/User.hpp>
#include <Tarnwick_API/Testing/FakeOperation.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tarnwick_API::Testing {

/// A backend for an application's tests: it sends nothing, answers what the test says, and remembers what it was asked.
/// Each member has the name of the function of `ApiCommunicateable` that it stands for. It has no state of its own: a
/// `login` changes neither `username` nor what `currentUser` answers.
///
///     const auto backend = FakeBackend::create();
///     api->setApi(backend);
///     backend->login.fail(ResponseError::unauthorized());
///
/// What it holds keeps the facade alive, and the facade this: `release` or `dropHeld` before the test ends, as
/// `ApiFixture` does.
/// Thread: as `ApiCommunicateable`.
class FakeBackend : public ApiCommunicateable {
public:
    /// One that answers what its members are told to.
    [[nodiscard]] static std::shared_ptr<FakeBackend> create();

    struct NoArguments {};
    struct LoginArguments {
        std::string username;
        std::string password;
        bool qvImport = false;
    };
    struct SetTokenArguments {
        std::string token;
        std::string secret;
    };
    struct GetCountriesArguments {
        std::int64_t filterId = 0;
        std::optional<double> latitude;
        std::optional<double> longitude;
    };
    struct GetServersArguments {
        std::int64_t filterId = 0;
        std::string countryCode;
        std::optional<double> latitude;
        std::optional<double> longitude;
    };
    struct GetServerArguments {
        std::int64_t id = 0;
    };
    struct GetCandidateServersArguments {
        std::int64_t filterId = 0;
        std::optional<std::string> countryCode;
        std::optional<std::int64_t> serviceId;
    };
    struct UpdateUserArguments {
        UserField field = UserField::username;
        std::string newValue;
    };
    struct CreateUserArguments {
        std::string username;
        std::string password;
    };
    struct GetDefaultFavoritesArguments {
        std::int64_t filterId = 0;
    };
    struct SendRequestArguments {
        Platform::Url url;
        Platform::Parameters parameters;
        Platform::ParameterEncoding encoding;
        Platform::HttpHeaders headers;
        Platform::HttpMethod method = Platform::HttpMethod::get;
        std::int64_t retryCount = 0;
    };

    FakeOperation<NoArguments, User> currentUser{"currentUser"};
    FakeOperation<LoginArguments, void> login{"login"};
    FakeOperation<NoArguments, void> logout{"logout"};
    FakeOperation<SetTokenArguments, User> setToken{"setToken"};
    FakeOperation<GetCountriesArguments, std::vector<Country>> getCountries{"getCountries"};
    FakeOperation<GetServersArguments, std::vector<Server>> getServers{"getServers"};
    FakeOperation<GetServerArguments, Server> getServer{"getServer"};
    FakeOperation<GetCandidateServersArguments, std::vector<Server>> getCandidateServers{"getCandidateServers"};
    FakeOperation<UpdateUserArguments, void> updateUser{"updateUser"};
    FakeOperation<CreateUserArguments, void> createUser{"createUser"};
    FakeOperation<NoArguments, Status> getStatus{"getStatus"};
    FakeOperation<NoArguments, std::string> getAuthToken{"getAuthToken"};
    FakeOperation<NoArguments, std::vector<Device>> getDevices{"getDevices"};
    FakeOperation<GetDefaultFavoritesArguments, std::vector<FavoriteEntry>> getDefaultFavorites{"getDefaultFavorites"};
    /// A result arrives with the status 200, an error with 0.
    FakeOperation<SendRequestArguments, Platform::Bytes> sendRequest{"sendRequest"};

    /// What these answer; the facade sets `environment` and `useFallbackIp`.
    std::optional<std::string> username;
    ApiEnvironment environment = ApiEnvironment::live;
    std::string apiHost = "api.example.test";
    std::string baseUrl = "https://api.example.test/vb";
    std::string fallbackIp = "203.0.113.7";
    bool useFallbackIp = false;
    std::optional<SessionError> adoptKeptToken = SessionError{SessionError::nobodySignedIn};
    Platform::KeychainStatus forgetToken = Platform::KeychainStatus::success;
    std::optional<Platform::KeychainStatus> tokenKeeping;

    /// Those of the facade that has this backend, none before: `backend->attemptObservers->tell({...})` tells the
    /// application of a failed attempt.
    std::shared_ptr<const AttemptObservers> attemptObservers;

    /// Gives up what any operation holds: those completions are never called.
    void dropHeld();

protected:
    FakeBackend() = default;
};

}  // namespace Tarnwick_API::Testing
