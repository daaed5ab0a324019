#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include "DeafPort.hpp"
#include "SessionFixture.hpp"

#include <algorithm>
#include <array>
#include <thread>

#include <gmock/gmock.h>

namespace {

using namespace Tarnwick_API::Platform;
using Then = ScriptedAnswer::Then;

class Session : public SessionFixture {
protected:
    ScriptedServer server;
    HttpSessionConfiguration configuration = plainConfiguration();
};

TEST_F(Session, AdmitsSixAtOnce) {
    server.answerAlways({"", Then::hold});
    auto session = makeHttpSession(configuration);
    constexpr std::size_t count = 20;
    for (std::size_t number = 0; number < count; ++number) {
        send(*session, request(server.url()));
    }
    ASSERT_TRUE(server.waitForRequests(6));
    session.reset();
    ASSERT_TRUE(waitForAnswers(count));
    ASSERT_TRUE(server.waitForClosed(6));
    EXPECT_EQ(server.connections(), 6U);
    EXPECT_EQ(server.requests().size(), 6U);
}

TEST_F(Session, WorksOffAThousandOverSixConnections) {
    server.answer({"", Then::hold});
    server.answer({"", Then::hold});
    server.answerAlways(okAnswer("x"));
    const auto session = makeHttpSession(configuration);
    constexpr std::size_t count = 1000;
    for (std::size_t number = 0; number < count; ++number) {
        send(*session, request(server.url()));
    }
    // Two connections are held for good; the others go on.
    ASSERT_TRUE(waitForAnswers(count - 2));
    EXPECT_LE(server.connections(), 6U);
    EXPECT_EQ(server.requests().size(), count);
}

TEST_F(Session, AdmitsInOrder) {
    configuration.connectionsPerHost = 1;
    server.answerAlways(okAnswer("x"));
    const auto session = makeHttpSession(configuration);
    constexpr std::size_t count = 100;
    for (std::size_t number = 0; number < count; ++number) {
        send(*session, request(server.url() + "/" + std::to_string(number)));
    }
    ASSERT_TRUE(waitForAnswers(count));
    EXPECT_EQ(server.connections(), 1U);
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), count);
    for (std::size_t number = 0; number < count; ++number) {
        EXPECT_THAT(requests[number], testing::StartsWith("GET /" + std::to_string(number) + " "));
    }
}

TEST_F(Session, SendsNothingButAGetAgainWhenAKeptConnectionEnds) {
    const struct {
        HttpMethod method;
        std::string error;
        std::size_t requests;
    } rows[] = {
        {HttpMethod::get, "none", 3},
        {HttpMethod::post, "connectionLost", 2},
        {HttpMethod::put, "connectionLost", 2},
        {HttpMethod::delete_, "connectionLost", 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(name(row.method));
        ScriptedServer scripted;
        scripted.answer(okAnswer("first"));
        scripted.answer({"", Then::close});
        scripted.answer(okAnswer("again"));
        const auto session = makeHttpSession(configuration);
        exchange(*session, request(scripted.url()));
        EXPECT_EQ(errorName(exchange(*session, request(scripted.url(), row.method))), row.error);
        EXPECT_EQ(scripted.requests().size(), row.requests);
    }
}

TEST_F(Session, TakesNothingForAnAnswerThatCameBeforeTheRequest) {
    server.answerAlways(okAnswer("own"));
    const auto session = makeHttpSession(configuration);
    exchange(*session, request(server.url()));
    server.say("HTTP/1.1 408 Request Time-out\r\nContent-Length: 6\r\n\r\nothers");
    const auto answer = exchange(*session, request(server.url(), HttpMethod::post));
    EXPECT_EQ(answer.body, "own");
    EXPECT_EQ(server.connections(), 2U);
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(Session, LeavesTheConnectionsOfAChangedNetwork) {
    const struct {
        std::chrono::milliseconds grace;
        std::string saidSince;
        std::ptrdiff_t lost;
    } rows[] = {
        {std::chrono::milliseconds{60}, "", 1},
        {std::chrono::minutes{1}, okAnswer("late").bytes, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.saidSince);
        configuration.graceAfterNetworkChange = row.grace;
        ScriptedServer scripted;
        const auto session = makeHttpSession(configuration);
        scripted.answer({"", Then::hold});
        scripted.answer(okAnswer("idle"));
        scripted.answer(okAnswer("new"));
        answers.clear();
        send(*session, request(scripted.url()));
        ASSERT_TRUE(scripted.waitForRequests(1));
        send(*session, request(scripted.url()));
        ASSERT_TRUE(waitForAnswers(1));
        makeHttpSession(configuration)->networkChanged();
        send(*session, request(scripted.url()));
        ASSERT_TRUE(waitForAnswers(2));
        EXPECT_EQ(scripted.connections(), 3U) << "the idle connection was used";
        scripted.say(row.saidSince);
        ASSERT_TRUE(waitForAnswers(3));
        EXPECT_EQ(std::count_if(answers.begin(), answers.end(),
                                [](const auto& answer) { return errorName(answer) == "connectionLost"; }),
                  row.lost);
        EXPECT_EQ(std::count_if(answers.begin(), answers.end(), [](const auto& answer) { return !answer.error; }),
                  3 - row.lost);
        EXPECT_TRUE(scripted.waitForClosed(2)) << "what is not used again stays open";
    }
}

TEST_F(Session, LeavesWhatHasTheNumberOfAClosedSocketAlone) {
    const DeafPort deaf;
    ScriptedServer scripted;
    scripted.answer(okAnswer("good"));
    configuration.idleTimeout = std::chrono::milliseconds{50};
    const auto session = makeHttpSession(configuration);
    EXPECT_EQ(errorName(exchange(*session, request("http://127.0.0.1:" + std::to_string(deaf.number)))), "timedOut");
    std::array<int, 2> hosts{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, hosts.data()), 0);
    session->networkChanged();
    EXPECT_EQ(exchange(*session, request(scripted.url())).body, "good");
    EXPECT_EQ(::send(hosts[0], "x", 1, MSG_NOSIGNAL), 1);
    std::for_each(hosts.begin(), hosts.end(), ::close);
}

TEST_F(Session, LimitsEachOriginForItself) {
    configuration.connectionsPerHost = 1;
    ScriptedServer other;
    server.answer({"", Then::hold});
    other.answer(okAnswer("other"));
    const auto session = makeHttpSession(configuration);
    send(*session, request(server.url()));
    send(*session, request(server.url() + "/waits"));
    ASSERT_TRUE(server.waitForRequests(1));
    EXPECT_EQ(exchange(*session, request(other.url())).body, "other");
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(Session, DroppedCancelsWhatIsUnderWayAndWhatWaits) {
    configuration.connectionsPerHost = 1;
    server.answer({"HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n1", Then::hold});
    server.answer({"", Then::hold});
    auto session = makeHttpSession(configuration);
    const auto survivor = makeHttpSession(configuration);
    send(*session, request(server.url() + "/running"));
    ASSERT_TRUE(server.waitForRequests(1));
    send(*survivor, request(server.url() + "/survivor"));
    ASSERT_TRUE(server.waitForRequests(2));
    send(*session, request(server.url() + "/waiting"));
    session.reset();
    ASSERT_TRUE(waitForAnswers(2));
    for (const auto& answer : answers) {
        EXPECT_EQ(errorName(answer), "cancelled");
        EXPECT_TRUE(answer.request && answer.body);
    }
    EXPECT_TRUE(server.waitForClosed(1));
    EXPECT_EQ(server.requests().size(), 2U);
}

/// Has nothing, and stops `source` when it is asked: on the cache's thread.
class StoppingCache final : public UrlCache {
public:
    explicit StoppingCache(StopSource source) : UrlCache{0, 0, ""}, source_{std::move(source)} {}
    std::shared_ptr<const CachedUrlResponse> cachedResponse(const HttpRequest& /*request*/) override {
        source_.stop();
        return nullptr;
    }

private:
    StopSource source_;
};

TEST_F(Session, GivesAStoppedRequestUpWhereverItIs) {
    enum class When { beforeItIsSent, inTheCache, later };
    // More than the sockets take: once it has been said, the client has read of it.
    constexpr std::size_t muchMore = std::size_t{1} << 24U;
    const struct {
        const char* where;
        When stopped;
        /// Behind another one, on whose connection it waits.
        bool waits = false;
        bool isCached = false;
        std::string said = {};
    } rows[] = {
        {"before its answer", When::later},
        {"before its answer, with a cache", When::later, false, true},
        {"in the middle of its body", When::later, false, false,
         "HTTP/1.1 200 OK\r\n\r\n" + std::string(muchMore, 'x')},
        {"in its queue", When::later, true},
        {"in its queue, with a cache", When::later, true, true},
        {"on the cache's thread", When::inTheCache, true, true},
        {"nowhere yet", When::beforeItIsSent, true},
    };
    configuration.connectionsPerHost = 1;
    server.answerAlways(okAnswer("elsewhere"));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.where);
        const StopSource ahead;
        const StopSource source;
        const auto inTheCache = row.stopped == When::inTheCache ? source : StopSource{};
        configuration.cache = row.isCached ? std::make_shared<StoppingCache>(inTheCache) : nullptr;
        ScriptedServer scripted;
        scripted.answer({"", Then::hold});
        scripted.answerAlways(okAnswer("x"));
        const auto session = makeHttpSession(configuration);
        std::vector<std::string> endings;
        const auto sendTo = [&](const std::string& path, HttpMethod method, const StopToken& stop) {
            session->sendStoppable(
                request(scripted.url() + path, method),
                [&endings, path](const HttpAnswer& answer) { endings.push_back(path + " " + errorName(answer)); },
                stop);
        };
        const auto waitForEndings = [&](std::size_t count) {
            return queue->runUntil([&] { return endings.size() >= count; });
        };
        if (row.waits) {
            // The cache is not asked about a POST.
            sendTo("/ahead", HttpMethod::post, ahead.token());
        }
        if (row.stopped == When::beforeItIsSent) {
            source.stop();
        }
        sendTo("/stopped", HttpMethod::get, source.token());
        sendTo("/behind", HttpMethod::get, {});
        ASSERT_TRUE(scripted.waitForRequests(1));
        // Once this is answered, the others have come to where they wait.
        EXPECT_EQ(exchange(*session, request(server.url())).body, "elsewhere");
        scripted.say(row.said);
        std::thread{[&] { source.stop(); }}.join();
        ASSERT_TRUE(waitForEndings(1));
        ahead.stop();
        std::vector<std::string> expected{"/stopped cancelled", "/behind none"};
        if (row.waits) {
            expected.insert(expected.begin() + 1, "/ahead cancelled");
        }
        ASSERT_TRUE(waitForEndings(expected.size()));
        EXPECT_EQ(endings, expected);
        EXPECT_TRUE(scripted.waitForClosed(1));
        EXPECT_THAT(scripted.requests(), testing::ElementsAre(testing::HasSubstr(row.waits ? " /ahead " : " /stopped "),
                                                              testing::HasSubstr(" /behind ")));
    }
}

TEST_F(Session, MayBeDroppedInACompletion) {
    server.answerAlways(okAnswer("x"));
    auto session = makeHttpSession(configuration);
    bool isDone = false;
    session->send(request(server.url()), [&](const HttpAnswer&) {
        session->send(request(server.url()), [&](const HttpAnswer&) { isDone = true; });
        session.reset();
    });
    EXPECT_TRUE(queue->runUntil([&] { return isDone; }));
}

TEST_F(Session, AnswersOnTheQueueInstalledAtTheCall) {
    server.answer(okAnswer("x"));
    const auto session = makeHttpSession(configuration);
    send(*session, request(server.url()));
    MainQueue::setMain(std::make_shared<VirtualTimeMainQueue>());
    EXPECT_TRUE(waitForAnswers(1));
}

TEST_F(Session, TakesRequestsFromManyThreads) {
    server.answerAlways(okAnswer("x"));
    const auto session = makeHttpSession(configuration);
    constexpr std::size_t each = 100;
    constexpr std::size_t senders = 4;
    std::vector<std::thread> threads;
    threads.reserve(senders);
    for (std::size_t index = 0; index < senders; ++index) {
        threads.emplace_back([&] {
            for (std::size_t count = 0; count < each; ++count) {
                send(*session, request(server.url()));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    ASSERT_TRUE(waitForAnswers(senders * each));
    EXPECT_TRUE(std::all_of(answers.begin(), answers.end(), [](const auto& answer) { return answer.body == "x"; }));
}

TEST_F(Session, AsksItsOwnReachability) {
    struct Never final : Reachability {
        [[nodiscard]] bool isReachable(std::string_view urlText) const override { return urlText == "yes"; }
    };
    configuration.reachability = std::make_shared<Never>();
    const auto session = makeHttpSession(configuration);
    EXPECT_TRUE(session->isReachable("yes"));
    EXPECT_FALSE(session->isReachable(server.url()));
    EXPECT_TRUE(makeHttpSession(plainConfiguration())->isReachable(server.url()));
}

}  // namespace
