// The engine on the test's own thread and by the test's own clock: what takes time, and what is used again.

#include "SessionFixture.hpp"
#include <Platform/Http/Transfers/EarlyAnswers.hpp>
#include <Platform/Http/Transfers/TransferEngine.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>

#include <utility>

#include <gmock/gmock.h>

namespace {

using namespace Tarnwick_API::Platform;
using namespace std::chrono_literals;
using Then = ScriptedAnswer::Then;

class Engine : public SessionFixture {
protected:
    Engine() {
        configuration.idleTimeout = 10s;
        configuration.wholeTimeout = 1h;
        configuration.graceAfterNetworkChange = 2s;
    }

    void begin(std::shared_ptr<const HttpRequest> sent) {
        if (!group) {
            group = std::make_shared<TransferGroup>(std::make_shared<const HttpSessionConfiguration>(configuration));
        }
        Exchange exchange{group, std::move(sent),
                          [this](TransportResult result) { results.push_back(std::move(result)); }};
        exchange.stop = std::make_unique<ExchangeStop>(ExchangeStop{stop.token()});
        engine.start(std::move(exchange));
    }

    /// Runs the engine until `done`; false when it is not in a time that no busy machine takes.
    bool runUntil(const std::function<bool()>& done) {
        const auto limit = std::chrono::steady_clock::now() + 20s;
        while (!done() && std::chrono::steady_clock::now() < limit) {
            if (!engine.perform() && !done()) {
                engine.wait(100ms);
            }
        }
        return done();
    }

    bool runUntilRequests(std::size_t count) {
        return runUntil([&] { return server.requests().size() >= count && !engine.perform(); });
    }

    bool runUntilResults(std::size_t count) {
        return runUntil([&] { return results.size() >= count; });
    }

    /// Sends `bytes`, if any, and has the engine take them.
    void say(const std::string& bytes) {
        if (bytes.empty()) {
            return;
        }
        server.say(bytes);
        engine.wait(20s);
        run();
    }

    void pass(std::chrono::milliseconds time) {
        now += time;
        run();
    }

    void run() {
        while (engine.perform()) {
        }
    }

    ScriptedServer server;
    HttpSessionConfiguration configuration = plainConfiguration();
    std::chrono::steady_clock::time_point now = std::chrono::steady_clock::now();
    std::shared_ptr<TransferGroup> group;
    std::vector<TransportResult> results;
    StopSource stop;
    TransferEngine engine{[this] { return now; }};
};

TEST_F(Engine, EndsWhatMakesNoProgress) {
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n";
    const struct {
        std::string before, then;
        bool isProgress;
    } rows[] = {
        {"", "", false},           {"", head, false},    {"", "HTTP/1.1 103 Hints\r\nX: y\r\n\r\n", true},
        {head, "X: y\r\n", false}, {head, "\r\n", true}, {head + "\r\n", "body", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.before + "|" + row.then);
        server.answer({"", Then::hold});
        results.clear();
        begin(request(server.url()));
        ASSERT_TRUE(runUntilRequests(server.requests().size() + 1));
        say(row.before);
        EXPECT_EQ(engine.timeToWait(1h), 10s);
        pass(4s);
        EXPECT_EQ(engine.timeToWait(1h), 6s);
        say(row.then);
        pass(5'999ms);
        EXPECT_TRUE(results.empty());
        pass(1ms);
        EXPECT_EQ(results.empty(), row.isProgress);
        EXPECT_EQ(engine.timeToWait(1h), row.isProgress ? 4s : 1h) << "it would spin, or wait for nothing";
        pass(4s);
        ASSERT_EQ(results.size(), 1U);
        EXPECT_EQ(errorName(results[0].answer), "timedOut");
    }
}

TEST_F(Engine, GivesOneGraceToSeveralNoticesOfAChange) {
    server.answer({"", Then::hold});
    begin(request(server.url()));
    ASSERT_TRUE(runUntilRequests(1));
    engine.networkChanged();
    const auto grace = engine.timeToWait(1h);
    pass(100ms);
    engine.networkChanged();
    pass(grace - 100ms);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(errorName(results[0].answer), "connectionLost");
}

TEST_F(Engine, EndsAHandshakeThatMakesNoProgress) {
    server.answer({"", Then::hold});
    begin(request("https://" + server.authority()));
    ASSERT_TRUE(runUntil([&] { return server.connections() == 1; }));
    pass(10s);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(errorName(results[0].answer), "timedOut");
}

TEST_F(Engine, TakesANewConnectionAfterATimeOut) {
    auto first = okAnswer("first");
    first.afterRequests = 2;
    server.answer(first);
    server.answer(first);
    server.answer({"", Then::hold});
    server.answer(okAnswer("again"));
    begin(request(server.url()));
    begin(request(server.url()));
    ASSERT_TRUE(runUntilResults(2));
    begin(request(server.url()));
    ASSERT_TRUE(runUntilRequests(3));
    pass(10s);
    begin(request(server.url()));
    ASSERT_TRUE(runUntilResults(4));
    EXPECT_EQ(errorName(results[2].answer), "timedOut");
    EXPECT_EQ(results[3].answer.body, "again");
    EXPECT_EQ(server.connections(), 3U) << "the one that was idle meanwhile may be as dead";
}

TEST_F(Engine, CountsTheWholeTimeOverAllRedirects) {
    const std::string moved = "HTTP/1.1 302 Moved\r\nLocation: /n\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";
    configuration.idleTimeout = 1h;
    server.answerAlways({"", Then::hold});
    begin(request(server.url()));
    for (const std::size_t hop : {1U, 2U, 3U}) {
        ASSERT_TRUE(runUntilRequests(hop)) << "it has ended with time left";
        EXPECT_TRUE(results.empty());
        pass(20min);
        say(moved);
    }
    ASSERT_TRUE(runUntilResults(1)) << "it has time left after an hour";
    EXPECT_EQ(errorName(results[0].answer), "timedOut");
}

TEST_F(Engine, KeepsNothingOfTheTransferBefore) {
    configuration.maximumHeadSize = 200;
    configuration.maximumBodySize = 100;
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const struct {
        const char* what;
        std::string answered;
        std::string error = "none";
        HttpMethod method = HttpMethod::get;
        bool isSuspected = false;
    } rows[] = {
        {"a good answer", okAnswer("good").bytes},
        {"much of a head", ok + "X: " + std::string(120, 'x') + "\r\nContent-Length: 0\r\n\r\n"},
        {"too much of a head", ok + "X: " + std::string(300, 'x') + "\r\n\r\n", "tooLarge"},
        {"too much of a body", okAnswer(std::string(101, 'x')).bytes, "tooLarge"},
        {"half a body", ok + "Content-Length: 9\r\n\r\nhalf", "timedOut"},
        {"half a body, and a stop", ok + "Content-Length: 9\r\n\r\nhalf", "cancelled"},
        {"a bad length", ok + "Content-Length: x\r\n\r\n", "badAnswer"},
        {"a gzip stream that is cut", ok + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\n\x1f\x8b\x08\b",
         "badAnswer"},
        {"no body", "HTTP/1.1 204 None\r\n\r\n"},
        {"a head alone", ok + "Content-Length: 9\r\n\r\n", "none", HttpMethod::head},
        {"a request with a body", okAnswer("good").bytes, "none", HttpMethod::put},
        {"a change of the network", okAnswer("good").bytes, "none", HttpMethod::get, true},
    };
    const auto gone = ScriptedServer{}.url();
    const auto accept = "Host: " + server.authority() + "\r\nAccept: */*\r\nAccept-Encoding: gzip\r\n";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        results.clear();
        const bool isStopped = row.error == "cancelled";
        server.answer({isStopped ? "" : row.answered, isStopped ? Then::hold : Then::keepOpen});
        begin(request(server.url(), row.method, {}, ParameterEncoding::url, {{"X", row.what}}));
        if (row.isSuspected) {
            engine.networkChanged();
        }
        ASSERT_TRUE(runUntilRequests(server.requests().size() + 1));
        if (row.error == "timedOut") {
            pass(10s);
        } else if (isStopped) {
            say(row.answered);
            std::exchange(stop, {}).stop();
            engine.cancelStopped();
        }
        ASSERT_TRUE(runUntilResults(1));
        EXPECT_EQ(errorName(results[0].answer), row.error);
        results.clear();
        begin(request(gone));
        ASSERT_TRUE(runUntilResults(1));
        EXPECT_EQ(errorName(results[0].answer), "cannotConnect");
        EXPECT_FALSE(results[0].answer.response);

        for (const auto method : {HttpMethod::post, HttpMethod::get}) {
            server.answer({"", Then::hold});
            const bool isPost = method == HttpMethod::post;
            begin(request(server.url() + "/next", method, isPost ? Parameters{{"a", 1}} : Parameters{}));
            ASSERT_TRUE(runUntilRequests(server.requests().size() + 1));
            EXPECT_EQ(server.requests().back(),
                      isPost ? "POST /next HTTP/1.1\r\n" + accept +
                                   "Content-Type: application/x-www-form-urlencoded; charset=utf-8\r\n"
                                   "Content-Length: 3\r\n\r\na=1"
                             : "GET /next HTTP/1.1\r\n" + accept + "\r\n");
            results.clear();
            pass(9s);
            EXPECT_TRUE(results.empty());
            server.say(
                "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: application/json\r\n"
                "Content-Length: 1\r\n\r\n1");
            ASSERT_TRUE(runUntilResults(1));
            EXPECT_EQ(errorName(results[0].answer), "none");
            EXPECT_EQ(results[0].answer.body, "1");
            EXPECT_EQ(results[0].answer.response.value_or(HttpResponse{}).headers.size(), 3U);
            EXPECT_TRUE(results[0].isKnownWhole);
        }
    }
}

TEST(EarlyAnswersInAHurry, AreWatchedForAWhile) {
    const CurlEasy one{curl_easy_init()};
    const CurlEasy other{curl_easy_init()};
    EarlyAnswers answers;
    answers.watch(one.get());
    answers.watch(other.get());
    answers.forget(other.get());
    for (int look = 0; look < 4; ++look) {
        EXPECT_TRUE(answers.areWatched());
        answers.reported(other.get());
        answers.reported(one.get());
    }
    EXPECT_FALSE(answers.areWatched()) << "the I/O thread would spin";
}

}  // namespace
