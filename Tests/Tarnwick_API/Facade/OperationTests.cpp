#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Operations/DetachedCoroutine.hpp>
#include <Tarnwick_API/Operations/StoppableScope.hpp>

#include "BackendFixture.hpp"

#include <atomic>
#include <chrono>
#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using namespace std::chrono_literals;
using Platform::StopReason;
using Platform::StopSource;

/// How an operation ended, whatever its type: "value", "nothing" or the error's sentence.
template <typename T>
std::string ending(const Outcome<T>& outcome) {
    if (outcome) {
        return "value";
    }
    return outcome.failure().error() ? std::string{outcome.failure().localizedDescription()} : "nothing";
}

const std::string stopped{CancellationError{StopReason::stopped}.localizedDescription()};
const std::string tooLong{CancellationError{StopReason::deadlinePassed}.localizedDescription()};

using AnyOperation =
    std::variant<Operation<void>, Operation<User>, Operation<std::vector<Country>>, Operation<std::vector<Server>>,
                 Operation<Server>, Operation<Status>, Operation<std::string>, Operation<std::vector<Device>>,
                 Operation<std::vector<FavoriteEntry>>>;

/// A coroutine that its owner destroys, wherever it waits.
struct OwnedCoroutine {
    struct promise_type {
        OwnedCoroutine get_return_object() { return {std::coroutine_handle<promise_type>::from_promise(*this)}; }
        std::suspend_never initial_suspend() const noexcept { return {}; }
        std::suspend_always final_suspend() const noexcept { return {}; }
        void return_void() const noexcept {}
        void unhandled_exception() const noexcept { std::terminate(); }
    };
    std::coroutine_handle<promise_type> handle;
};

template <typename T>
DetachedCoroutine awaited(Operation<T> operation, std::vector<std::string>& endings) {
    const auto outcome = co_await std::move(operation);
    endings.push_back(ending(outcome));
}

class Operations : public Testing::BackendFixture {
protected:
    Operations() { facade->setApi(backend); }

    /// Each operation of the facade, new.
    [[nodiscard]] std::vector<AnyOperation> all() const {
        std::vector<AnyOperation> operations;
        operations.emplace_back(facade->createUser("user", "password"));
        operations.emplace_back(facade->login("user", "password"));
        operations.emplace_back(facade->getCurrentUser());
        operations.emplace_back(facade->getCountries(ServerProfile::general));
        operations.emplace_back(facade->getServers("DE"));
        operations.emplace_back(facade->getCandidateServers("DE", ServerProfile::general));
        operations.emplace_back(facade->getServer(5));
        operations.emplace_back(facade->updateUser(UserField::password, "new"));
        operations.emplace_back(facade->setToken("token", "secret"));
        operations.emplace_back(facade->getStatus());
        operations.emplace_back(facade->getAuthToken());
        operations.emplace_back(facade->getDevices());
        operations.emplace_back(facade->getDefaultFavorites());
        operations.emplace_back(facade->setToken("token", "secret"));
        operations.emplace_back(facade->logout());
        return operations;
    }

    /// Begins it in one of the ways of waiting, and notes how it ends.
    template <typename T>
    void begin(Operation<T> operation, int way) {
        if (way == 0) {
            awaited(std::move(operation), endings);
        } else if (way == 1) {
            const auto future = std::make_shared<OperationFuture<T>>(std::move(operation).future());
            queue->runReady();
            endingsInFuture.emplace_back([future] { return future->isReady() ? ending(future->get()) : "pending"; });
        } else if (way == 2) {
            std::move(operation).then([this](const Outcome<T>& outcome) { endings.push_back(ending(outcome)); });
        } else if constexpr (std::is_void_v<T>) {
            std::move(operation).start([this](std::optional<ApiError> error) {
                endings.push_back(error ? std::string{error->localizedDescription()} : "value");
            });
        } else {
            std::move(operation).start([this](const std::optional<T>& value, const std::optional<ApiError>& error) {
                endings.push_back(value ? "value" : error ? std::string{error->localizedDescription()} : "nothing");
            });
        }
    }

    void runToTheEnd() {
        queue->runAll();
        for (const auto& endingInFuture : std::exchange(endingsInFuture, {})) {
            endings.push_back(endingInFuture());
        }
    }

    static constexpr int ways = 4;

    std::shared_ptr<TarnwickApi> facade =
        TarnwickApi::create({.uuid = Testing::installation, .apiUrl = {.live = "live.example.test"}});
    std::vector<std::string> endings;
    std::vector<std::function<std::string()>> endingsInFuture;
};

using Testing::ScriptedHttpSession;

TEST_F(Operations, EndOnceHoweverTheyAreStopped) {
    struct Row {
        const char* name;
        std::function<AnyOperation(AnyOperation, const StopSource&)> limit;
        std::function<void(Platform::VirtualTimeMainQueue&, const StopSource&)> meanwhile;
        std::string ending;
        /// Requests sent by one operation.
        std::size_t requests;
    };
    const auto stoppedBy = [](AnyOperation any, const StopSource& source) {
        return std::visit([&](auto& operation) { return AnyOperation{std::move(operation).stoppedBy(source.token())}; },
                          any);
    };
    const auto within = [](std::chrono::milliseconds time) {
        return [time](AnyOperation any, const StopSource& /*unused*/) {
            return std::visit([&](auto& operation) { return AnyOperation{std::move(operation).within(time)}; }, any);
        };
    };
    const auto unlimited = [](AnyOperation any, const StopSource& /*unused*/) { return any; };
    const auto stop = [](auto& /*queue*/, const StopSource& source) { source.stop(); };
    const auto nothing = [](auto& /*queue*/, const StopSource& /*source*/) {};
    const std::string notReachable{ResponseError::notReachable().localizedDescription()};
    const Row rows[] = {
        {"not at all", unlimited, nothing, notReachable, 6},
        {"during the first attempt", stoppedBy, stop, stopped, 1},
        {"from another thread", stoppedBy,
         [](auto& /*queue*/, const StopSource& source) { std::thread{[&] { source.stop(); }}.join(); }, stopped, 1},
        {"by the first of two",
         [stoppedBy](AnyOperation any, const StopSource& source) {
             return stoppedBy(stoppedBy(std::move(any), source), StopSource{});
         },
         stop, stopped, 1},
        {"in a pause", stoppedBy,
         [](auto& mainQueue, const StopSource& source) {
             mainQueue.advance(1500ms);
             source.stop();
         },
         stopped, 2},
        {"after its end", stoppedBy,
         [](auto& mainQueue, const StopSource& source) {
             mainQueue.runAll();
             source.stop();
         },
         notReachable, 6},
        {"by a deadline in a pause", within(500ms), nothing, tooLong, 1},
        {"by a deadline later", within(1500ms), nothing, tooLong, 2},
        {"by a deadline after its end", within(1h), nothing, notReachable, 6},
    };
    session->script({ScriptedHttpSession::failure()});
    for (const auto& row : rows) {
        for (int way = 0; way < ways; ++way) {
            for (auto& any : all()) {
                backend->setOauthToken(OAuthToken{"token", "secret"});
                const StopSource source;
                session->requests.clear();
                endings.clear();
                std::visit([&](auto& operation) { begin(std::move(operation), way); },
                           any = row.limit(std::move(any), source));
                row.meanwhile(*queue, source);
                runToTheEnd();

                SCOPED_TRACE(std::string{row.name} + ", way " + std::to_string(way) + ", operation " +
                             std::to_string(any.index()));
                EXPECT_EQ(endings, std::vector{row.ending});
                EXPECT_EQ(session->requests.size(), row.requests);
            }
        }
    }
}

TEST_F(Operations, DontBeginTwice) {
    auto operation = facade->getStatus();
    std::move(operation).start({});
    // NOLINTNEXTLINE(bugprone-use-after-move): what is checked.
    EXPECT_THROW(std::move(operation).start({}), std::logic_error);
}

TEST_F(Operations, DontBeginWhenStoppedBefore) {
    const StopSource source;
    source.stop();
    for (int way = 0; way < ways; ++way) {
        for (auto& any : all()) {
            endings.clear();
            std::visit([&](auto& operation) { begin(std::move(operation).stoppedBy(source.token()), way); }, any);
            EXPECT_TRUE(endings.empty()) << "not inside the call";
            runToTheEnd();
            EXPECT_EQ(endings, std::vector{stopped});
        }
    }
    EXPECT_TRUE(session->requests.empty());
}

TEST_F(Operations, AStoppedSignInEndsItsSecondRequestToo) {
    const StopSource source;
    session->script({ScriptedHttpSession::answer(200, R"({"oauth_token":"t","oauth_token_secret":"s"})"),
                     ScriptedHttpSession::failure()});
    begin(facade->login("user", "password").stoppedBy(source.token()), 0);
    queue->advance(500ms);
    EXPECT_EQ(session->requests.size(), 2U);
    source.stop();
    queue->runReady();
    EXPECT_EQ(endings, std::vector{stopped});
    EXPECT_FALSE(facade->currentUser());
    queue->runAll();
    EXPECT_EQ(session->requests.size(), 2U);
}

TEST_F(Operations, WhatAnAnswerStartsIsNotStoppedWithIt) {
    const StopSource source;
    session->script({ScriptedHttpSession::answer(200, "{}")});
    facade->logout().start({});
    facade->getStatus().stoppedBy(source.token()).start([&](const auto& /*status*/, const auto& /*error*/) {
        source.stop();
        facade->getAuthToken(
            [&](const auto& token, const auto& /*error*/) { endings.push_back(token.value_or("none")); });
    });
    queue->runAll();
    EXPECT_EQ(endings, std::vector<std::string>{"{}"});
}

TEST_F(Operations, WhatAnAnswerInsideTheCallStartsIsNotStoppedWithItEither) {
    const StopSource source;
    const StoppableScope outer{source.token()};
    { const StoppableScope inner{Platform::StopToken{}}; }
    EXPECT_TRUE(StoppableScope::current().canStop()) << "a scope ends with the one inside it";
    session->script({ScriptedHttpSession::answer(200, "{}")});
    session->reachableTimes = 0;
    facade->getStatus().stoppedBy(source.token()).start([&](const auto& /*status*/, const auto& /*error*/) {
        session->reachableTimes = 2;
        facade->getAuthToken(
            [&](const auto& token, const auto& /*error*/) { endings.push_back(token.value_or("none")); });
    });
    source.stop();
    queue->runAll();
    EXPECT_EQ(endings, std::vector<std::string>{"{}"});
}

TEST_F(Operations, EndOnceThoughABackendAnswersAfterTheStop) {
    const StopSource source;
    Completion<Status> answer;
    Operation<Status>{[&](Completion<Status> onCompletion) { answer = std::move(onCompletion); }}
        .stoppedBy(source.token())
        .then([&](const auto& outcome) { endings.push_back(ending(outcome)); });
    source.stop();
    queue->runAll();
    answer(Status{}, std::nullopt);
    queue->runAll();
    EXPECT_EQ(endings, std::vector{stopped});
}

TEST_F(Operations, EndAlsoWhereACompletionIsNotCalled) {
    session->script({ScriptedHttpSession::answer(202, "later")});
    begin(facade->getAuthToken(), 0);
    const auto silent = TarnwickApi::create({.uuid = Testing::installation, .apiVersion = ApiVersion::v2});
    begin(silent->getStatus(), 0);
    begin(silent->getDevices(), 2);
    queue->runAll();
    EXPECT_EQ(endings, (std::vector<std::string>{"nothing", "nothing", "nothing"}));
}

TEST_F(Operations, HaveFuturesThatTheMainThreadDoesNotWaitFor) {
    session->script({ScriptedHttpSession::answer(200, "text")});
    auto token = facade->getAuthToken().future();
    EXPECT_THROW(static_cast<void>(token.get()), std::logic_error);
    EXPECT_THROW(static_cast<void>(token.waitFor(1h)), std::logic_error);
    std::string received;
    std::atomic<bool> isReceived = false;
    std::thread waiting{[&] {
        received = token.get().value();
        isReceived = true;
    }};
    while (!isReceived) {
        queue->runReady();
    }
    waiting.join();
    EXPECT_EQ(received, "text");
}

TEST_F(Operations, GiveAnOutcomeInWhichNothingIsOverlooked) {
    EXPECT_EQ(Outcome<int>{5}.value(), 5);
    static_assert(!std::is_reference_v<decltype(Outcome<int>{5}.value())>, "a loop over it outlives the outcome");
    const Outcome<int> refused{Failure{ApiError{LoginError{LoginError::noOauthToken}}}};
    EXPECT_FALSE(refused);
    ASSERT_NE(refused.failure().as<LoginError>(), nullptr);
    EXPECT_THROW(static_cast<void>(refused.value()), OperationFailed);
    const Outcome<int> nothing{Failure{std::nullopt}};
    EXPECT_FALSE(nothing);
    EXPECT_FALSE(nothing.failure().localizedDescription().empty());
}

TEST_F(Operations, TakeCompletionsThatOwnWhatOnlyMoves) {
    session->script({ScriptedHttpSession::failure()});
    auto owned = std::make_unique<std::string>("owned");
    std::string seen;
    facade->getStatus([&seen, owned = std::move(owned)](const auto& /*status*/, const auto& error) {
        seen = *owned + (error ? " error" : "");
    });
    queue->runAll();
    EXPECT_EQ(seen, "owned error");
}

TEST_F(Operations, ACoroutineThatThrowsOrIsDroppedHarmsNobody) {
    session->script({ScriptedHttpSession::answer(200, "text")});
    const auto throwing = [](std::shared_ptr<TarnwickApi> api) -> DetachedCoroutine {
        static_cast<void>(co_await api->getStatus());
        throw std::runtime_error{"the application's own"};
    };
    throwing(facade);
    EXPECT_THROW(queue->runAll(), std::runtime_error);
    const auto destroyed = [this](std::shared_ptr<TarnwickApi> api) -> OwnedCoroutine {
        endings.push_back(ending(co_await api->getAuthToken()));
    };
    destroyed(facade).handle.destroy();
    queue->runAll();
    EXPECT_TRUE(endings.empty());
}

#ifdef __cpp_lib_jthread
TEST_F(Operations, StopWithTheStandardLibrarysToken) {
    session->script({ScriptedHttpSession::failure()});
    std::stop_source source;
    begin(facade->getStatus().stoppedBy(Platform::StopToken::from(source.get_token())), 2);
    source.request_stop();
    queue->runAll();
    EXPECT_EQ(endings, std::vector{stopped});
    EXPECT_TRUE(Platform::StopToken::from(source.get_token()).isStopped());
}
#endif

}  // namespace
}  // namespace Tarnwick_API
