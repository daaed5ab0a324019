// Restores a session or signs in, lists the countries and signs out, with callbacks. `sign_in_with_coroutines.cpp` does
// the same. Usage: example_sign_in_with_callbacks HOST[:PORT] CA-FILE NAME PASSWORD

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Tarnwick_API;

/// The steps, each begun by the answer to the one before. It lives until the main queue has been stopped.
class Visit {
public:
    explicit Visit(std::shared_ptr<TarnwickApi> api) : api_{std::move(api)} {}

    void begin(const std::string& name, const std::string& password) {
        api_->restoreSession().start([=, this](const std::optional<User>& user, const auto& /*why not*/) {
            if (user) {
                greet(*user);
            } else {
                signIn(name, password);
            }
        });
    }

    [[nodiscard]] int exitStatus() const noexcept { return exitStatus_; }

private:
    void signIn(const std::string& name, const std::string& password) {
        api_->login(name, password).start([this](const std::optional<User>& user, const auto& error) {
            if (user) {
                greet(*user);
            } else {
                end(Failure{error});
            }
        });
    }

    void greet(const User& user) {
        std::cout << "Hello, " << user.username << "!\n";
        listCountries();
    }

    void listCountries() {
        using Countries = std::vector<Country>;
        api_->getCountries(ServerProfile::general)
            .start([this](const std::optional<Countries>& countries, const auto& error) {
                for (const Country& country : countries.value_or(Countries{})) {
                    std::cout << country.countryCode << ' ' << country.localizedCountryName() << '\n';
                }
                signOut(countries ? std::nullopt : std::optional{Failure{error}});
            });
    }

    /// Also after a failure, so that the account does not keep a device that nobody uses.
    void signOut(std::optional<Failure> earlier) {
        api_->logout().start([this, earlier = std::move(earlier)](const std::optional<ApiError>& error) {
            end(error ? Failure{error} : earlier);
        });
    }

    void end(const std::optional<Failure>& failure) {
        if (failure) {
            std::cerr << failure->localizedDescription() << '\n';
        } else {
            std::cout << "Signed out.\n";
            exitStatus_ = EXIT_SUCCESS;
        }
        Platform::BuiltInMainQueue::shared()->stop();
    }

    std::shared_ptr<TarnwickApi> api_;
    int exitStatus_ = EXIT_FAILURE;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 5) {
        std::cerr << "usage: example_sign_in_with_callbacks HOST[:PORT] CA-FILE NAME PASSWORD\n";
        return EXIT_FAILURE;
    }
    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    // This program has no event loop of its own.
    Platform::MainQueue::setMain(Platform::BuiltInMainQueue::shared());

    Visit visit{TarnwickApi::create({
        .consumerKey = "tarnwick-demo-key",
        .consumerSecret = "tarnwick-demo-secret",
        .partnersId = 7,
        // An application keeps its own between runs.
        .uuid = Platform::Uuid::random(),
        .keychainService = "example",
        .filterIds = {.generalCountriesAll = 12},
        .apiUrl = {.live = arguments[1]},
    })};
    visit.begin(arguments[3], arguments[4]);
    Platform::BuiltInMainQueue::shared()->run();
    return visit.exitStatus();
}
