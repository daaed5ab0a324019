#include <Tarnwick_API/Operations/DetachedCoroutine.hpp>
#include <Tarnwick_API/Testing/ApiFixture.hpp>

#include "Received.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API::Testing {
namespace {

using namespace std::chrono_literals;
using Platform::StopReason;

const ApiError refused = ResponseError::forbidden();

User named(std::string name) {
    User user;
    user.username = std::move(name);
    return user;
}

std::string ending(const Outcome<User>& outcome) {
    if (!outcome) {
        return outcome.failure().error() ? std::string{outcome.failure().localizedDescription()} : "nothing";
    }
    return outcome->username;
}

DetachedCoroutine awaited(Operation<User> operation, std::vector<std::string>& endings) {
    endings.push_back(ending(co_await std::move(operation)));
}

/// A way of waiting for a sign-in: begins it, and has its end noted.
using Way = void (*)(Operation<User>, std::vector<std::string>&, std::vector<std::jthread>&);

const Way ways[] = {
    [](Operation<User> operation, std::vector<std::string>& endings, auto& /*threads*/) {
        const auto mainThread = std::this_thread::get_id();
        std::move(operation).start([&, mainThread](std::optional<User> user, std::optional<ApiError> error) {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            endings.push_back(ending(user ? Outcome<User>{*user} : Outcome<User>{Failure{std::move(error)}}));
        });
    },
    [](Operation<User> operation, std::vector<std::string>& endings, auto& /*threads*/) {
        awaited(std::move(operation), endings);
    },
    [](Operation<User> operation, std::vector<std::string>& endings, std::vector<std::jthread>& threads) {
        threads.emplace_back(
            [&endings, future = std::make_shared<OperationFuture<User>>(std::move(operation).future())] {
                endings.push_back(ending(future->get()));
            });
    },
};

TEST(FakeBackend, AnswersAsToldInEveryWayOfWaiting) {
    struct Row {
        const char* what;
        std::function<void(ApiFixture&)> tell;
        std::function<void(ApiFixture&, const Platform::StopSource&)> meanwhile;
        std::string ending;
        bool isSignedIn = false;
    };
    const auto nothing = [](auto&, auto&) {};
    const auto holdBoth = [](ApiFixture& fixture) {
        fixture.backend->login.hold();
        fixture.backend->currentUser.hold();
    };
    const auto stop = [](auto&, const auto& source) { source.stop(); };
    const std::string stopped{CancellationError{StopReason::stopped}.localizedDescription()};
    const Row rows[] = {
        {"a value", [](auto&) {}, nothing, "ada", true},
        {"an error", [](auto& fixture) { fixture.backend->currentUser.fail(refused); }, nothing,
         std::string{refused.localizedDescription()}},
        {"nothing", [](auto& fixture) { fixture.backend->currentUser.answerNothing(); }, nothing, "nothing"},
        {"a failure without a result",
         [](auto& fixture) { fixture.backend->login.fail(LoginError{LoginError::Value::invalidConsumerKey}); }, nothing,
         std::string{LoginError{LoginError::Value::invalidConsumerKey}.localizedDescription()}},
        {"held, let go", holdBoth,
         [](auto& fixture, auto&) {
             fixture.backend->login.release();
             fixture.queue->runReady();
             fixture.backend->currentUser.release(0);
         },
         "ada", true},
        {"held, given up", holdBoth, [](auto& fixture, auto&) { fixture.backend->dropHeld(); }, "nothing"},
        {"held, stopped", holdBoth, stop, stopped},
        {"ended, then stopped", [](auto&) {}, stop, "ada", true},
        {"held, stopped by another thread", holdBoth,
         [](auto&, const auto& source) { std::jthread{[&] { source.stop(); }}; }, stopped},
        {"the second half held, stopped", [](auto& fixture) { fixture.backend->currentUser.hold(); }, stop, stopped},
        {"held, out of time", holdBoth, [](auto& fixture, auto&) { fixture.queue->advance(5s); },
         std::string{CancellationError{StopReason::deadlinePassed}.localizedDescription()}},
    };
    for (const auto& row : rows) {
        for (const auto way : ways) {
            SCOPED_TRACE(row.what);
            ApiFixture fixture;
            fixture.backend->currentUser.answer(named("ada"));
            row.tell(fixture);
            std::vector<std::string> endings;
            {
                std::vector<std::jthread> threads;
                const Platform::StopSource source;
                way(fixture.api->login("ada", "secret").stoppedBy(source.token()).within(5s), endings, threads);
                EXPECT_TRUE(endings.empty()) << "an answer inside the call";
                fixture.queue->runReady();
                row.meanwhile(fixture, source);
                fixture.queue->runReady();
                // What comes too late changes nothing.
                fixture.backend->login.release();
                fixture.queue->runAll();
                fixture.backend->currentUser.release();
                fixture.queue->runAll();
            }
            EXPECT_EQ(endings, std::vector{row.ending});
            EXPECT_EQ(fixture.api->currentUser().has_value(), row.isSignedIn);
        }
    }
}

TEST(FakeBackend, RecordsTheArgumentsByTheirNames) {
    const ApiFixture fixture;
    auto& fake = *fixture.backend;
    ApiCommunicateable& backend = fake;
    fake.getCountries.answer({});
    fake.getServers.answer({});
    fake.getCandidateServers.answer({});
    fake.sendRequest.fail(refused);
    fake.setToken.answerNothing();
    backend.login("name", "password", true, {});
    backend.setToken("token", "secret", {});
    backend.getCountries(1, 2.5, 3.5, {});
    backend.getServers(4, "DE", 5.5, 6.5, {});
    backend.getCandidateServers(8, "FR", 9, {});
    backend.updateUser(UserField::email, "new", {});
    backend.createUser("other", "word", {});
    std::optional<ApiResult> result;
    backend.sendRequest(*Platform::Url::fromString("https://a.test/b"), {{"key", "value"}},
                        Platform::ParameterEncoding::json, {{"Name", "text"}}, Platform::HttpMethod::put, 11,
                        [&](const auto& /*body*/, ApiResult theResult) { result = std::move(theResult); });
    fixture.queue->runAll();

    const auto& login = fake.login.calls().at(0);
    EXPECT_EQ(std::tuple(login.username, login.password, login.qvImport), std::tuple("name", "password", true));
    const auto& token = fake.setToken.calls().at(0);
    EXPECT_EQ(std::tuple(token.token, token.secret), std::tuple("token", "secret"));
    const auto& countries = fake.getCountries.calls().at(0);
    EXPECT_EQ(std::tuple(countries.filterId, countries.latitude, countries.longitude), std::tuple(1, 2.5, 3.5));
    const auto& servers = fake.getServers.calls().at(0);
    EXPECT_EQ(std::tuple(servers.filterId, servers.countryCode, servers.latitude, servers.longitude),
              std::tuple(4, "DE", 5.5, 6.5));
    const auto& candidates = fake.getCandidateServers.calls().at(0);
    EXPECT_EQ(std::tuple(candidates.filterId, candidates.countryCode, candidates.serviceId), std::tuple(8, "FR", 9));
    const auto& update = fake.updateUser.calls().at(0);
    EXPECT_EQ(std::tuple(update.field, update.newValue), std::tuple(UserField::email, "new"));
    const auto& created = fake.createUser.calls().at(0);
    EXPECT_EQ(std::tuple(created.username, created.password), std::tuple("other", "word"));
    const auto& request = fake.sendRequest.calls().at(0);
    EXPECT_EQ(std::tuple(request.url.absoluteString(), request.method, request.retryCount),
              std::tuple("https://a.test/b", Platform::HttpMethod::put, 11));
    ASSERT_TRUE(result);
    EXPECT_EQ(std::tuple(result->status, result->error), std::tuple(0, refused));
}

TEST(FakeBackend, GivesUpWhatAnyOperationHolds) {
    const ApiFixture fixture;
    auto& fake = *fixture.backend;
    ApiCommunicateable& backend = fake;
    const auto holdAll = [](auto&... operations) { (operations.hold(), ...); };
    holdAll(fake.currentUser, fake.login, fake.logout, fake.setToken, fake.getCountries, fake.getServers,
            fake.getServer, fake.getCandidateServers, fake.updateUser, fake.createUser, fake.getStatus,
            fake.getAuthToken, fake.getDevices, fake.getDefaultFavorites, fake.sendRequest);
    const auto caller = std::make_shared<int>();
    const auto onCompletion = [caller](const auto&...) {};
    const auto free = caller.use_count();
    backend.currentUser(onCompletion);
    backend.login("name", "password", false, onCompletion);
    backend.logout(onCompletion);
    backend.setToken("token", "secret", onCompletion);
    backend.getCountries(1, {}, {}, onCompletion);
    backend.getServers(1, "DE", {}, {}, onCompletion);
    backend.getServer(1, onCompletion);
    backend.getCandidateServers(1, {}, {}, onCompletion);
    backend.updateUser(UserField::email, "new", onCompletion);
    backend.createUser("name", "password", onCompletion);
    backend.getStatus(onCompletion);
    backend.getAuthToken(onCompletion);
    backend.getDevices(onCompletion);
    backend.getDefaultFavorites(1, onCompletion);
    backend.sendRequest(*Platform::Url::fromString("https://a.test"), {}, Platform::ParameterEncoding::url, {},
                        Platform::HttpMethod::get, onCompletion);
    EXPECT_EQ(caller.use_count(), free + 15);
    fake.dropHeld();
    EXPECT_EQ(caller.use_count(), free);
}

TEST(FakeBackend, SaysWhatBecameOfTheKeptToken) {
    const ApiFixture fixture;
    fixture.backend->adoptKeptToken = SessionError{SessionError::keychainUnavailable};
    fixture.backend->forgetToken = Platform::KeychainStatus::notAvailable;
    fixture.backend->tokenKeeping = Platform::KeychainStatus::notAvailable;
    EXPECT_EQ(fixture.api->adoptKeptToken(), fixture.backend->adoptKeptToken);
    EXPECT_EQ(fixture.api->forgetSession(), fixture.backend->forgetToken);
    EXPECT_EQ(fixture.api->tokenKeeping(), fixture.backend->tokenKeeping);
}

TEST(FakeBackend, LetsAnswersOvertakeOneAnotherAndFollowTheArguments) {
    const ApiFixture fixture;
    auto& getServer = fixture.backend->getServer;
    const auto ask = [&](std::int64_t id, std::vector<std::string>& answers) {
        fixture.api->getServer(id, [&](const std::optional<Server>& server, const auto& error) {
            answers.push_back(server ? server->name : std::string{error->localizedDescription()});
        });
    };
    std::vector<std::string> answers;
    EXPECT_THROW(ask(1, answers), std::logic_error) << "no answer was set";
    getServer.hold();
    ask(2, answers);
    ask(3, answers);
    ask(4, answers);
    EXPECT_THROW(getServer.release(), std::logic_error) << "none is lost by that";
    getServer.answerWith([](const auto& call) {
        Server server;
        server.name = std::to_string(call.id);
        return call.id < 4 ? Outcome<Server>{server} : Outcome<Server>{Failure{refused}};
    });
    getServer.release(3);
    EXPECT_THROW(getServer.release(3), std::out_of_range);
    getServer.release();
    fixture.queue->runAll();
    EXPECT_EQ(answers, (std::vector<std::string>{std::string{refused.localizedDescription()}, "2", "3"}));
}

TEST(ApiFixture, EndsWithWhatIsStillOnItsWay) {
    const auto queueBefore = Platform::MainQueue::main();
    for (const bool isHeld : {true, false}) {
        std::weak_ptr<TarnwickApi> api;
        std::weak_ptr<Platform::MainQueue> queue;
        {
            const ApiFixture fixture;
            api = fixture.api;
            queue = fixture.queue;
            EXPECT_EQ(Platform::MainQueue::main(), fixture.queue);
            if (isHeld) {
                fixture.backend->login.hold();
            }
            fixture.api->login("ada", "secret", false, [](auto...) { ADD_FAILURE() << "an answer after the end"; });
            fixture.api->login("ada", "secret").start([](auto...) { ADD_FAILURE() << "an answer after the end"; });
            fixture.api->login("ada", "secret").within(5s).start([](auto...) {
                ADD_FAILURE() << "an answer after the end";
            });
        }
        EXPECT_TRUE(api.expired());
        EXPECT_TRUE(queue.expired());
    }
    EXPECT_EQ(Platform::MainQueue::main(), queueBefore);
}

TEST(ApiFixture, LeadsTheLibrarysOwnBackendToTheScript) {
    const ApiFixture fixture;
    fixture.api->setVersion(ApiVersion::v1);
    EXPECT_THROW(fixture.session->script({}), std::invalid_argument);
    fixture.session->script({ScriptedHttpSession::failure(), ScriptedHttpSession::answer(200, R"({"realip":"192.0.2.1",
                                 "required_client_versions":{"mac_7":"7.1"}})")});
    Received<Status> received;
    fixture.api->getStatus(received.completion());
    fixture.queue->runAll();
    ASSERT_TRUE(received.result);
    EXPECT_EQ(received.result->ip, "192.0.2.1");
    EXPECT_EQ(fixture.session->requests.size(), 2U);
}

}  // namespace
}  // namespace Tarnwick_API::Testing
