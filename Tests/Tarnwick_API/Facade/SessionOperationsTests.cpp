#include <Tarnwick_API/Facade/ApiNotification.hpp>
#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Application/NotificationCenter.hpp>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const ApiError anError = ResponseError::notReachable();

/// A backend that holds the completions of what concerns the session until the test answers them; the answers need not
/// be ones that the service can give. All else it ignores.
class HeldBackend final : public ApiCommunicateable {
public:
    std::vector<std::string> asked;
    Completion<void> pendingVoid;
    Completion<User> pendingUser;
    Completion<Status> pendingStatus;

    void currentUser(Completion<User> onCompletion) override {
        asked.emplace_back("currentUser");
        pendingUser = std::move(onCompletion);
    }
    void login(const std::string& username, const std::string& password, bool qvImport,
               Completion<void> onCompletion) override {
        asked.push_back("login " + username + " " + password + (qvImport ? " import" : ""));
        pendingVoid = std::move(onCompletion);
    }
    void setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) override {
        asked.push_back("setToken " + token + " " + secret);
        pendingUser = std::move(onCompletion);
    }
    void logout(Completion<void> onCompletion) override { pendingVoid = std::move(onCompletion); }
    void updateUser(UserField, const std::string&, Completion<void> onCompletion) override {
        pendingVoid = std::move(onCompletion);
    }
    void createUser(const std::string&, const std::string&, Completion<void> onCompletion) override {
        pendingVoid = std::move(onCompletion);
    }
    void getStatus(Completion<Status> onCompletion) override { pendingStatus = std::move(onCompletion); }

    [[nodiscard]] std::optional<std::string> username() const override { return std::nullopt; }
    [[nodiscard]] ApiEnvironment environment() const override { return ApiEnvironment::live; }
    void setEnvironment(ApiEnvironment) override {}
    [[nodiscard]] std::string apiHost() const override { return {}; }
    [[nodiscard]] std::string baseUrl() const override { return {}; }
    [[nodiscard]] std::string fallbackIp() const override { return {}; }
    [[nodiscard]] bool useFallbackIp() const override { return false; }
    void setUseFallbackIp(bool) override {}
    void getCountries(std::int64_t, std::optional<double>, std::optional<double>,
                      Completion<std::vector<Country>>) override {}
    void getServers(std::int64_t, const std::string&, std::optional<double>, std::optional<double>,
                    Completion<std::vector<Server>>) override {}
    void getServer(std::int64_t, Completion<Server>) override {}
    void getCandidateServers(std::int64_t, const std::optional<std::string>&, std::optional<std::int64_t>,
                             Completion<std::vector<Server>>) override {}
    void getAuthToken(Completion<std::string>) override {}
    void getDevices(Completion<std::vector<Device>>) override {}
    void getDefaultFavorites(std::int64_t, Completion<std::vector<FavoriteEntry>>) override {}
    void sendRequest(const Platform::Url&, const Platform::Parameters&, Platform::ParameterEncoding,
                     const Platform::HttpHeaders&, Platform::HttpMethod, std::int64_t, RequestCompletion) override {}
};

class SessionOperations : public ::testing::Test {
protected:
    SessionOperations() { facade->setApi(backend); }
    // What the backend still holds keeps the facade alive, and that the backend.
    ~SessionOperations() override {
        backend->pendingVoid = {};
        backend->pendingUser = {};
        backend->pendingStatus = {};
    }

    static User userNamed(const std::string& name) {
        User user;
        user.username = name;
        return user;
    }

    /// What an observer sees at this moment, for the order of things.
    void note(const std::string& what) {
        journal.push_back(what + " with user " +
                          (facade ? facade->currentUser().value_or(userNamed("none")).username : "gone"));
    }

    Completion<User> userCompletion() {
        return [this](std::optional<User> user, std::optional<ApiError> error) {
            note("completion");
            received = std::move(user);
            receivedError = std::move(error);
        };
    }
    Completion<void> voidCompletion() {
        return [this](std::optional<ApiError> error) {
            note("completion");
            receivedError = std::move(error);
        };
    }

    void signInAs(const std::string& name) {
        facade->getCurrentUser({});
        backend->pendingUser(userNamed(name), std::nullopt);
    }

    std::shared_ptr<HeldBackend> backend = std::make_shared<HeldBackend>();
    std::shared_ptr<TarnwickApi> facade =
        TarnwickApi::create(ApiVersion::v1, "k", "s", 1, Platform::Uuid::random(), "tests",
                            FilterIds{1, 2, 3, 4, 5, 6, 7, 8, 9}, ApiUrl{"l", "b", "d", "s"});
    std::vector<std::string> journal;
    std::optional<User> received;
    std::optional<ApiError> receivedError;
    Platform::NotificationCenter::Observation anyNotification =
        Platform::NotificationCenter::defaultCenter().addObserver("", [this](const Platform::Notification& posted) {
            EXPECT_EQ(posted.object, facade);
            note(posted.name);
        });
};

TEST_F(SessionOperations, LoginFetchesTheUserAndAnnouncesNothing) {
    facade->login("bob", "pw", true, userCompletion());
    EXPECT_FALSE(facade->currentUser());
    backend->pendingVoid(std::nullopt);
    EXPECT_THAT(journal, IsEmpty());
    backend->pendingUser(userNamed("bob"), anError);
    EXPECT_THAT(backend->asked, ElementsAre("login bob pw import", "currentUser"));
    EXPECT_THAT(journal, ElementsAre("completion with user bob"));
    EXPECT_EQ(received->username, "bob");
    EXPECT_FALSE(receivedError);
}

TEST_F(SessionOperations, LoginRefusedClearsThenPostsThenCompletes) {
    signInAs("old");
    facade->login("bob", "pw", false, userCompletion());
    backend->pendingVoid(anError);
    EXPECT_THAT(journal, ElementsAre("DidLogout with user none", "completion with user none"));
    EXPECT_FALSE(received);
    EXPECT_EQ(receivedError, anError);
    EXPECT_THAT(backend->asked, ElementsAre("currentUser", "login bob pw"));
}

TEST_F(SessionOperations, LoginWithoutAUserEndsTheSessionToo) {
    for (const auto& error : {std::optional<ApiError>{anError}, std::optional<ApiError>{}}) {
        journal.clear();
        signInAs("old");
        facade->login("bob", "pw", false, userCompletion());
        backend->pendingVoid(std::nullopt);
        backend->pendingUser(std::nullopt, error);
        EXPECT_THAT(journal, ElementsAre("DidLogout with user none", "completion with user none"));
        EXPECT_FALSE(received);
        EXPECT_EQ(receivedError, error);
    }
}

TEST_F(SessionOperations, LogoutEndsTheSessionWhateverTheOutcome) {
    for (const auto& error : {std::optional<ApiError>{anError}, std::optional<ApiError>{}}) {
        journal.clear();
        signInAs("bob");
        facade->logout(voidCompletion());
        backend->pendingVoid(error);
        EXPECT_THAT(journal, ElementsAre("DidLogout with user none", "completion with user none"));
        EXPECT_EQ(receivedError, error);
    }
}

TEST_F(SessionOperations, AnObserverThatThrowsHoldsNothingUp) {
    const auto throwing = Platform::NotificationCenter::defaultCenter().addObserver(
        "DidLogout", [](const auto&) { throw std::runtime_error{"observer"}; });
    const std::function<void()> failures[] = {
        [this] {
            facade->login("bob", "pw", false, userCompletion());
            backend->pendingVoid(anError);
        },
        [this] {
            facade->logout(voidCompletion());
            backend->pendingVoid(anError);
        },
        [this] {
            facade->setToken("t", "s", userCompletion());
            backend->pendingUser(std::nullopt, anError);
        },
    };
    for (const auto& fail : failures) {
        signInAs("bob");
        receivedError.reset();
        EXPECT_THROW(fail(), std::runtime_error);
        EXPECT_EQ(receivedError, anError);
        EXPECT_FALSE(facade->currentUser());
    }
}

TEST_F(SessionOperations, CurrentUserThatFailsLeavesTheUser) {
    signInAs("bob");
    facade->getCurrentUser(userCompletion());
    backend->pendingUser(std::nullopt, anError);
    EXPECT_THAT(journal, ElementsAre("completion with user bob"));
    EXPECT_EQ(receivedError, anError);
    facade->getCurrentUser(userCompletion());
    backend->pendingUser(userNamed("eve"), anError);
    EXPECT_EQ(facade->currentUser()->username, "eve");
    EXPECT_FALSE(receivedError);
}

TEST_F(SessionOperations, SetTokenPostsBeforeItClears) {
    signInAs("old");
    facade->setToken("t", "s", userCompletion());
    backend->pendingUser(userNamed("bob"), std::nullopt);
    EXPECT_THAT(journal, ElementsAre("completion with user bob"));
    const std::pair<std::optional<User>, std::optional<ApiError>> failures[] = {
        {std::nullopt, anError}, {userNamed("eve"), anError}, {std::nullopt, std::nullopt}};
    for (const auto& [user, error] : failures) {
        signInAs("bob");
        journal.clear();
        facade->setToken("t", "s", userCompletion());
        backend->pendingUser(user, error);
        EXPECT_THAT(journal, ElementsAre("DidLogout with user bob", "completion with user none"));
        EXPECT_FALSE(received);
        EXPECT_EQ(receivedError, error);
    }
}

TEST_F(SessionOperations, StatusIsReplacedByWhateverCame) {
    Status status;
    status.ip = "192.0.2.1";
    std::optional<std::string> seenInside;
    facade->getStatus([&](const std::optional<Status>& /*status*/, const std::optional<ApiError>& /*error*/) {
        seenInside = facade->currentStatus()->ip;
    });
    backend->pendingStatus(status, std::nullopt);
    EXPECT_EQ(seenInside, "192.0.2.1");
    facade->getStatus({});
    backend->pendingStatus(std::nullopt, anError);
    EXPECT_FALSE(facade->currentStatus());
}

TEST_F(SessionOperations, OtherOperationsTouchNothing) {
    signInAs("bob");
    facade->createUser("u", "p", voidCompletion());
    backend->pendingVoid(anError);
    facade->updateUser(UserField::username, "eve", voidCompletion());
    backend->pendingVoid(std::nullopt);
    EXPECT_THAT(journal, ElementsAre("completion with user bob", "completion with user bob"));
}

TEST_F(SessionOperations, AnObserverMayDropTheFacade) {
    const auto dropping = Platform::NotificationCenter::defaultCenter().addObserver(
        "DidLogout", [this](const Platform::Notification& /*posted*/) { facade.reset(); });
    bool completed = false;
    anyNotification.remove();
    facade->logout([&](const auto& /*error*/) { completed = true; });
    std::exchange(backend->pendingVoid, {})(std::nullopt);
    EXPECT_TRUE(completed);
}

}  // namespace
}  // namespace Tarnwick_API
