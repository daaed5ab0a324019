#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "BackendFixture.hpp"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::HttpMethod;
using Platform::ParameterEncoding;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::Le;
using Testing::ScriptedHttpSession;

/// A host's own, which answers each request twice.
class AnsweringTwice final : public Platform::HttpSession {
public:
    explicit AnsweringTwice(std::shared_ptr<HttpSession> session) : session_{std::move(session)} {}
    [[nodiscard]] const Platform::HttpHeaders& defaultHeaders() const override { return session_->defaultHeaders(); }
    [[nodiscard]] bool isReachable(std::string_view url) const override { return session_->isReachable(url); }
    void send(std::shared_ptr<const Platform::HttpRequest> request, Completion onCompletion) override {
        session_->send(request, onCompletion);
        session_->send(request, onCompletion);
    }

private:
    std::shared_ptr<HttpSession> session_;
};

class RequestEngine : public Testing::BackendFixture {
protected:
    struct Outcome {
        int times = 0;
        std::optional<Platform::Bytes> body;
        ApiResult result;
    };

    const Platform::Url status = *Platform::Url::fromString("https://live.example.test/vb/status");
    /// Neither an error nor a response.
    const ScriptedHttpSession::Answer nothing = [](auto request) {
        return Platform::HttpAnswer{std::move(request), std::nullopt, std::nullopt, Platform::Bytes{}};
    };

    /// A facade of the backend, which drops its own.
    std::shared_ptr<TarnwickApi> makeFacade() const {
        auto facade = TarnwickApi::create(ApiVersion::v1, "", "", 7, Testing::installation, "",
                                          FilterIds{0, 0, 0, 0, 0, 0, 0, 0, 0}, Testing::hosts);
        facade->setApi(backend);
        return facade;
    }

    void send(Outcome& outcome, const Platform::HttpHeaders& headers = {},
              const Platform::Parameters& parameters = {{"b", 2}, {"a", "x y"}},
              ParameterEncoding encoding = ParameterEncoding::json) {
        backend->sendRequest(status, parameters, encoding, headers, HttpMethod::post, 0,
                             [&outcome](std::optional<Platform::Bytes> body, ApiResult result) {
                                 ++outcome.times;
                                 outcome.body = std::move(body);
                                 outcome.result = std::move(result);
                             });
    }
};

TEST_F(RequestEngine, RetriesFiveTimesWithGrowingPausesAndReportsOnce) {
    session->script({ScriptedHttpSession::failure()});
    Outcome outcome;
    send(outcome);
    queue->runAll();

    std::vector<std::int64_t> milliseconds;
    for (const auto pause : queue->pausesAskedFor()) {
        milliseconds.push_back(std::chrono::round<std::chrono::milliseconds>(pause).count());
    }
    EXPECT_THAT(milliseconds, ElementsAre(1000, 1105, 1221, 1350, 1492));
    EXPECT_EQ(std::chrono::round<std::chrono::milliseconds>(queue->now()).count(), 6168);
    ASSERT_EQ(session->requests.size(), 6U);
    for (const auto& request : session->requests) {
        EXPECT_EQ(request->body(), R"({"a":"x y","b":2})");
        EXPECT_EQ(request->headers(), session->requests.front()->headers());
    }
    EXPECT_EQ(outcome.times, 1);
    EXPECT_FALSE(outcome.body);
    EXPECT_EQ(outcome.result.status, 0);
    EXPECT_EQ(outcome.result.error, ResponseError::notReachable());
}

TEST_F(RequestEngine, SpreadsItsPausesWhenAskedTo) {
    const auto firstPauses = [&](TarnwickApi& facade) {
        const auto before = queue->pausesAskedFor().size();
        facade.getStatus({});
        queue->runAll();
        std::vector<std::int64_t> milliseconds;
        for (const auto pause : queue->pausesAskedFor()) {
            milliseconds.push_back(std::chrono::round<std::chrono::milliseconds>(pause).count());
        }
        milliseconds.erase(milliseconds.begin(), milliseconds.begin() + static_cast<std::ptrdiff_t>(before));
        return milliseconds;
    };
    const auto none = std::nan("");
    const struct {
        double share;
        std::vector<double> numbers;
        std::vector<std::int64_t> pauses;
        std::size_t drawn = 5;
    } rows[] = {
        {0, {1}, {1000, 1105, 1221, 1350, 1492}, 0},
        {-1, {1}, {1000, 1105, 1221, 1350, 1492}, 0},
        {none, {1}, {1000, 1105, 1221, 1350, 1492}, 0},
        {0.5, {0, 0.25, 0.5, 0.75, 1}, {500, 829, 1221, 1687, 2238}},
        {1, {0, 1, 0.5, 0, 0}, {0, 2210, 1221, 0, 0}},
        {7, {0, 1, 0.5, 0, 0}, {0, 2210, 1221, 0, 0}},
        {0.5, {-3, 7, none, 0.5, 0.5}, {500, 1658, 611, 1350, 1492}},
    };
    session->script({ScriptedHttpSession::failure()});
    const auto facade = makeFacade();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.share);
        std::size_t drawn = 0;
        facade->setRetrySpread({row.share, [&] { return row.numbers.at(drawn++); }});
        EXPECT_EQ(firstPauses(*facade), row.pauses);
        EXPECT_EQ(drawn, row.drawn);
    }
    // It stays with the facade, whose settings may have it too, and draws by itself when nobody else does.
    facade->setRetrySpread({0.5, [] { return 0.0; }});
    facade->setVersion(ApiVersion::v1);
    EXPECT_EQ(firstPauses(*facade).at(0), 500);
    const auto spread = TarnwickApi::create(
        {.uuid = Testing::installation, .apiUrl = {.live = "live.example.test"}, .retrySpread = {.share = 0.5}});
    auto pauses = firstPauses(*spread);
    EXPECT_THAT(pauses, ElementsAre(AllOf(Ge(500), Le(1500)), AllOf(Ge(553), Le(1658)), AllOf(Ge(611), Le(1832)),
                                    AllOf(Ge(675), Le(2025)), AllOf(Ge(746), Le(2238))));
    EXPECT_NE(pauses, firstPauses(*spread));
}

TEST_F(RequestEngine, SucceedsOnALaterAttempt) {
    session->script(
        {ScriptedHttpSession::failure(), ScriptedHttpSession::answer(0, ""), ScriptedHttpSession::answer(200, "yes")});
    Outcome outcome;
    send(outcome);
    queue->runAll();
    EXPECT_EQ(session->requests.size(), 3U);
    EXPECT_EQ(outcome.times, 1);
    EXPECT_EQ(outcome.body, "yes");
    EXPECT_EQ(outcome.result.status, 200);
}

TEST_F(RequestEngine, CountsOneAnswerToEachAttempt) {
    ApiVersion1::setSessionManager(std::make_shared<AnsweringTwice>(session));
    session->script({ScriptedHttpSession::failure()});
    Outcome outcome;
    send(outcome);
    queue->runAll();
    EXPECT_EQ(outcome.times, 1);
    EXPECT_EQ(queue->pausesAskedFor().size(), 5U);
}

TEST_F(RequestEngine, TellsObserversBeforeItGoesOn) {
    const auto facade = makeFacade();
    session->script(
        {ScriptedHttpSession::failure(), ScriptedHttpSession::answer(0, ""), ScriptedHttpSession::answer(503, "")});
    std::vector<std::string> journal;
    const auto note = [&](const RequestAttempt& attempt) {
        journal.push_back(std::to_string(attempt.number) + " " + attempt.host + " " +
                          (attempt.failure ? name(attempt.failure->kind) : "answered") +
                          (attempt.anotherFollows ? " again" : ""));
    };
    const auto observation = facade->observeAttempts(note);
    const auto sendAndNote = [&] {
        backend->sendRequest(status, {}, ParameterEncoding::url, {}, HttpMethod::get,
                             [&](const auto& /*body*/, const auto& /*result*/) { journal.emplace_back("completed"); });
    };
    sendAndNote();
    queue->runAll();
    const auto here = "1 live.example.test cannotConnect";
    session->script({nothing});
    sendAndNote();
    queue->runAll();
    session->reachableTimes = 0;
    sendAndNote();
    std::thread{sendAndNote}.join();
    queue->runAll();
    EXPECT_THAT(journal, ElementsAre("1 live.example.test connectionLost again", "2 live.example.test badAnswer again",
                                     "3 live.example.test answered", "completed", "1 live.example.test other", here,
                                     "completed", "completed", here));
}

TEST_F(RequestEngine, ObserversMayDoWhatTheyLike) {
    auto facade = makeFacade();
    session->script({ScriptedHttpSession::failure(), ScriptedHttpSession::answer(200, "yes")});
    int calls = 0;
    AttemptObservers::Observation ended;
    AttemptObservers::Observation added;
    const auto throwing =
        facade->observeAttempts([](const auto& /*attempt*/) { throw std::runtime_error{"observer"}; });
    const auto changing = facade->observeAttempts([&](const auto& /*attempt*/) {
        ++calls;
        ended.remove();
        if (facade) {
            added = facade->observeAttempts([&](const auto& /*attempt*/) { calls += 10; });
            facade.reset();
        }
    });
    ended = facade->observeAttempts([&](const auto& /*attempt*/) { calls += 100; });
    Outcome outcome;
    send(outcome);
    std::exchange(backend, nullptr).reset();
    for (int exceptions = 0; exceptions < 2; ++exceptions) {
        EXPECT_THROW(queue->runAll(), std::runtime_error);
    }
    EXPECT_EQ(outcome.body, "yes");
    EXPECT_EQ(calls, 12);
}

TEST_F(RequestEngine, GoesOnWhereItBegan) {
    session->script({ScriptedHttpSession::failure(), ScriptedHttpSession::answer(200, "yes")});
    Outcome outcome;
    send(outcome);
    const auto other = std::make_shared<Platform::VirtualTimeMainQueue>();
    Platform::MainQueue::setMain(other);
    queue->runAll();
    EXPECT_EQ(queue->pausesAskedFor().size(), 1U);
    other->runAll();
    EXPECT_EQ(outcome.times, 0);
    queue->runAll();
    EXPECT_EQ(outcome.body, "yes");
}

TEST_F(RequestEngine, TellsAtOnceThatTheServiceIsOutOfReach) {
    session->reachableTimes = 0;
    Outcome outcome;
    send(outcome);
    EXPECT_EQ(outcome.times, 1);
    EXPECT_EQ(outcome.result.error, ResponseError::notReachable());
    EXPECT_TRUE(session->requests.empty());
    EXPECT_THAT(session->askedFor(), ElementsAre("https://live.example.test/vb/status"));
}

TEST_F(RequestEngine, EndsTheChainWhenTheServiceGoesOutOfReach) {
    session->script({ScriptedHttpSession::failure()});
    session->reachableTimes = 2;
    Outcome outcome;
    send(outcome);
    queue->runAll();
    EXPECT_EQ(session->requests.size(), 2U);
    EXPECT_EQ(queue->pausesAskedFor().size(), 2U);
    EXPECT_EQ(outcome.times, 1);
    EXPECT_EQ(outcome.result.error, ResponseError::notReachable());
}

TEST_F(RequestEngine, ClassifiesAnswers) {
    struct Row {
        std::int64_t status = 0;
        std::optional<std::string> body;
        int times = 0;
        std::optional<std::string> passedBody;
        std::optional<ApiError> error;
    };
    const Row rows[] = {
        {200, "x", 1, "x", {}},
        {200, "", 1, "", {}},
        {204, "", 1, "", {}},
        {299, "x", 1, "x", {}},
        {200, std::nullopt, 0, {}, {}},
        {202, "x", 1, {}, {}},
        {202, std::nullopt, 1, {}, {}},
        {199, "x", 1, {}, ResponseError::genericError("x")},
        {302, "", 1, {}, ResponseError::genericError("")},
        {400, "x", 1, {}, ResponseError::badRequest()},
        {401, "x", 1, {}, ResponseError::unauthorized()},
        {403, "x", 1, {}, ResponseError::forbidden()},
        {404, "{}", 1, {}, ResponseError::notFound()},
        {409, "taken", 1, {}, ResponseError::genericError("taken")},
        {500, std::nullopt, 1, {}, ResponseError::unknownError()},
        {500, "\xFF", 1, {}, ResponseError::unknownError()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.status);
        session->script({ScriptedHttpSession::answer(row.status, row.body)});
        Outcome outcome;
        send(outcome);
        queue->runAll();
        EXPECT_EQ(outcome.times, row.times);
        EXPECT_EQ(outcome.body, row.passedBody);
        EXPECT_EQ(outcome.result.error, row.error);
        EXPECT_EQ(outcome.result.status, row.times == 0 ? 0 : row.status);
    }
    EXPECT_TRUE(queue->pausesAskedFor().empty());
}

TEST_F(RequestEngine, IsSilentWithoutErrorAndWithoutResponse) {
    session->script({nothing});
    Outcome outcome;
    send(outcome);
    queue->runAll();
    EXPECT_EQ(outcome.times, 0);
    EXPECT_EQ(session->requests.size(), 1U);
}

TEST_F(RequestEngine, NamesTheApiHostWhateverTheCallerGave) {
    Outcome outcome;
    backend->setUseFallbackIp(true);
    send(outcome, {{"host", "other"}, {"Host", "another"}, {"Accept", "text/plain"}});
    EXPECT_EQ(session->requests.at(0)->headers(),
              (Platform::HttpHeaders{
                  {"Accept", "text/plain"}, {"Content-Type", "application/json"}, {"Host", "live.example.test"}}));
}

TEST_F(RequestEngine, SendsAnApplicationsOwnCall) {
    class Ping final : public ApiCallV1 {
    public:
        explicit Ping(ApiBase base)
            : ApiCallV1{{HttpMethod::get, "ping", ParameterEncoding::url, {{{"Accept", "text/plain"}, {"X-Own", "1"}}}},
                        std::move(base)} {}
    };
    std::int64_t status = 0;
    backend->dispatchCall(Ping{backend->apiBase()},
                          [&](const auto& /*body*/, const ApiResult& result) { status = result.status; });
    queue->runAll();
    EXPECT_EQ(status, 200);
    const auto& sent = *session->requests.at(0);
    EXPECT_EQ(askedBy(sent), "ping?");
    EXPECT_EQ(sent.headers().at("Accept"), "text/plain");
    EXPECT_EQ(sent.headers().at("X-Own"), "1");
    EXPECT_TRUE(sent.headers().contains("Authorization") && sent.headers().contains("Content-Type"));
}

TEST_F(RequestEngine, KeepsTheBackendAliveForTheWholeChain) {
    session->script({ScriptedHttpSession::failure(), ScriptedHttpSession::answer(200, "late")});
    Outcome outcome;
    send(outcome);
    const std::weak_ptr<ApiVersion1> observed = backend;
    backend.reset();
    queue->runAll();
    EXPECT_EQ(outcome.body, "late");
    EXPECT_TRUE(observed.expired());
}

TEST_F(RequestEngine, LogsOneExchangeEntryByEntryWithThePasswordMasked) {
    std::vector<std::string> entries;
    std::vector<std::string> functions;
    Platform::Logging::setSink([&](const Platform::Logging::Entry& entry) {
        entries.emplace_back(entry.message);
        functions.emplace_back(entry.function);
        EXPECT_NE(std::string{entry.file}.find("RequestEngine.cpp"), std::string::npos);
        EXPECT_GT(entry.line, 0);
    });
    session->script({ScriptedHttpSession::failure(), ScriptedHttpSession::answer(200, "{\"a\":1}")});
    Outcome outcome;
    send(outcome, {{"Accept", "a/b"}}, {{"password", "hush"}, {"z", "1"}});
    queue->runAll();
    Platform::Logging::setSink({});

    const std::string rendering =
        "$ curl -v \\\n\t-X POST \\\n\t-H \"Accept: a/b\" \\\n\t-H \"Content-Type: application/json\" \\\n"
        "\t-H \"Host: live.example.test\" \\\n\t-H \"User-Agent: Tests\" \\\n"
        "\t-d \"{\\\"password\\\":\\\"OBFUSCATED\\\",\\\"z\\\":\\\"1\\\"}\" \\\n"
        "\t\"https://live.example.test/vb/status\"";
    EXPECT_THAT(entries,
                ElementsAre("API request as curl:", rendering, "Use fallback mode: false",
                            "API request:", "= URLRequest: https://live.example.test/vb/status", "statuscode: -999",
                            "response data:", "", "API request as curl:", rendering, "Use fallback mode: false",
                            "API request:", "= URLRequest: https://live.example.test/vb/status", "statuscode: 200",
                            "response data:", "{\"a\":1}"));
    for (const auto& function : functions) {
        EXPECT_EQ(function, "sendRequest(url:parameters:encoding:headers:method:retryCount:onCompletion:)");
    }
}

}  // namespace
}  // namespace Tarnwick_API
