#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include "Http/HttpDate.hpp"
#include "ServiceFixture.hpp"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::WallTime;
using std::chrono::seconds;
using Headers = std::vector<std::pair<std::string, std::string>>;

/// A client with a cache, and a clock that tests turn.
class Cache : public Testing::ServiceFixture {
protected:
    Cache() {
        std::filesystem::remove_all(folder);
        Platform::WallClock::setSource([this] { return now.load(); });
        installFreshCache();
    }

    ~Cache() override {
        Platform::WallClock::setSource({});
        std::filesystem::remove_all(folder);
    }

    void install(std::shared_ptr<Platform::UrlCache> urlCache) {
        cache = std::move(urlCache);
        auto configuration = sessionConfiguration();
        configuration.cache = cache;
        use(std::move(configuration));
    }

    void installFreshCache() { install(std::make_shared<Platform::UrlCache>(1U << 20U, 0, std::nullopt)); }

    [[nodiscard]] std::string date(seconds fromNow = seconds{0}) const {
        return TarnwickService::httpDate(
            std::chrono::system_clock::to_time_t(std::chrono::floor<seconds>(now.load() + fromNow)));
    }

    /// Lets the service's next answer have these headers, the present date among them unless they say another, and in
    /// place of its own word on caches.
    void order(Headers headers, std::optional<unsigned> status = std::nullopt, std::size_t count = 1) {
        headers.insert(headers.begin(), {{"Date", date()}, {"Cache-Control", ""}});
        service.faults().add({.count = count, .status = status, .headers = std::move(headers)});
    }

    /// The address in the status; none when that is not had.
    std::optional<std::string> status() {
        const auto received = await<Status>([&](auto done) { api->getStatus(done); });
        return received.result ? std::optional{received.result->ip} : std::nullopt;
    }

    /// "", or what the client's latest request asked: the lines of conditional headers.
    [[nodiscard]] std::string lastCondition() const {
        std::string condition;
        const auto request = service.recordedRequests().back();
        for (const auto& [name, value] : request.headers) {
            if (name.starts_with("If-")) {
                condition.append(name).append(": ").append(value).append("\n");
            }
        }
        return condition;
    }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tarnwick-cache-" + std::to_string(getpid()));
    /// A whole second, as dates in headers have no parts of it.
    std::atomic<WallTime> now{std::chrono::floor<seconds>(std::chrono::system_clock::now())};
    std::shared_ptr<Platform::UrlCache> cache;
};

TEST_F(Cache, AnswersByTheRulesForAPrivateCache) {
    const struct {
        const char* name;
        Headers first;
        int later;
        /// Requests in all, and what the second one asked.
        std::uint64_t requests;
        std::string condition;
    } rows[] = {
        {"fresh to its last second", {{"Cache-Control", "max-age=60"}}, 59, 1, ""},
        {"stale at its end", {{"Cache-Control", "max-age=60"}}, 60, 2, ""},
        {"a clock set back", {{"Cache-Control", "max-age=60"}}, -1000, 1, ""},
        {"quoted, and in any case", {{"cache-control", "Private=\"a, b\", MAX-AGE=\"60\""}}, 59, 1, ""},
        {"the smaller of two ages", {{"Cache-Control", "max-age=60, max-age=30"}}, 30, 2, ""},
        {"an age that is none", {{"Cache-Control", "max-age=-1"}, {"Expires", date(seconds{60})}}, 0, 2, ""},
        {"an age beyond all numbers", {{"Cache-Control", "max-age=99999999999999999999"}}, 1'000'000, 1, ""},
        {"an age for shared caches", {{"Cache-Control", "s-maxage=60"}}, 0, 2, ""},
        {"a date of expiry", {{"Expires", date(seconds{60})}}, 59, 1, ""},
        {"a date of expiry, passed", {{"Expires", date(seconds{60})}}, 60, 2, ""},
        {"a lifetime counts from Date", {{"Date", date(seconds{-30})}, {"Expires", date(seconds{10})}}, 9, 1, ""},
        {"Expires that is no date", {{"Expires", "0"}}, 0, 2, ""},
        {"max-age before Expires", {{"Cache-Control", "max-age=10"}, {"Expires", date(seconds{60})}}, 10, 2, ""},
        {"older when it came, says Age", {{"Cache-Control", "max-age=60"}, {"Age", "30"}}, 30, 2, ""},
        {"still fresh with Age", {{"Cache-Control", "max-age=60"}, {"Age", "30"}}, 29, 1, ""},
        {"Age that is none", {{"Cache-Control", "max-age=60"}, {"Age", "x"}}, 59, 1, ""},
        {"older by its Date", {{"Cache-Control", "max-age=60"}, {"Date", date(seconds{-30})}}, 30, 2, ""},
        {"a Date to come", {{"Cache-Control", "max-age=60"}, {"Date", date(seconds{500})}}, 59, 1, ""},
        {"nothing said", {}, 0, 2, ""},
        {"a validator alone", {{"ETag", "\"a\""}}, 0, 2, "If-None-Match: \"a\"\n"},
        {"no lifetime is guessed",
         {{"Last-Modified", date(seconds{-99999})}},
         0,
         2,
         "If-Modified-Since: " + date(seconds{-99999}) + "\n"},
        {"both validators",
         {{"ETag", "W/\"a\""}, {"Last-Modified", "x"}},
         0,
         2,
         "If-Modified-Since: x\nIf-None-Match: W/\"a\"\n"},
        {"stale with a validator",
         {{"Cache-Control", "max-age=60"}, {"ETag", "\"a\""}},
         60,
         2,
         "If-None-Match: \"a\"\n"},
        {"to be confirmed always",
         {{"Cache-Control", "max-age=60, no-cache"}, {"ETag", "\"a\""}},
         0,
         2,
         "If-None-Match: \"a\"\n"},
        {"to be confirmed in part",
         {{"Cache-Control", "no-cache=\"x, y\", max-age=60"}, {"ETag", "\"a\""}},
         0,
         2,
         "If-None-Match: \"a\"\n"},
        {"not to be stored", {{"Cache-Control", "max-age=60, no-store"}, {"ETag", "\"a\""}}, 0, 2, ""},
        {"varies with the same", {{"Cache-Control", "max-age=60"}, {"Vary", "Accept-Language, x-none"}}, 0, 1, ""},
        {"varies with everything",
         {{"Cache-Control", "max-age=60"}, {"Vary", "Accept, *"}, {"ETag", "\"a\""}},
         0,
         2,
         ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        installFreshCache();
        service.reset();
        order(row.first);
        const auto first = status();
        ASSERT_TRUE(first);
        const auto beginning = now.load();
        now = beginning + seconds{row.later};
        const auto second = status();
        EXPECT_EQ(second, first);
        EXPECT_EQ(service.counters().requests, row.requests);
        EXPECT_EQ(lastCondition(), row.condition);
        now = beginning;
    }
}

TEST_F(Cache, UsesWhatTheServerConfirms) {
    order({{"ETag", "\"a\""}, {"Cache-Control", "max-age=10"}});
    const auto first = status();
    now = now.load() + seconds{10};
    order({{"ETag", "W/\"a\""}, {"Cache-Control", "max-age=100"}}, 304);
    EXPECT_EQ(status(), first);
    now = now.load() + seconds{99};
    EXPECT_EQ(status(), first);
    EXPECT_EQ(service.counters().requests, 2U) << "the confirmation has made it fresh again";

    now = now.load() + seconds{1};
    service.faults().add({.status = 503, .body = "later"});
    EXPECT_FALSE(status()) << "nothing stale is given out";
    order({{"ETag", "\"b\""}}, 304);
    EXPECT_EQ(status(), first) << "the whole answer is fetched when the server confirms another";
    EXPECT_EQ(service.counters().requests, 5U);
    EXPECT_EQ(lastCondition(), "");
}

TEST_F(Cache, TellsHeadersApartThatTheAnswerVariesWith) {
    order({{"Cache-Control", "max-age=60"}, {"Vary", "accept-language"}}, std::nullopt, 2);
    EXPECT_TRUE(status());
    Platform::Locale::setIdentifierLookup([] { return std::string{"fr_FR"}; });
    install(cache);
    EXPECT_TRUE(status());
    EXPECT_EQ(service.counters().requests, 2U);
    EXPECT_TRUE(status());
    EXPECT_EQ(service.counters().requests, 2U);
    Platform::Locale::setIdentifierLookup([] { return std::string{"de_DE"}; });
}

TEST_F(Cache, NeverAnswersWithAnotherAccountsData) {
    createAccount("ada", "pw");
    createAccount("bob", "pw");
    const auto currentUser = [&] { return await<User>([&](auto done) { api->getCurrentUser(done); }).result; };
    service.faults().add({.count = 100, .path = "users/me", .headers = {{"Cache-Control", "max-age=3600"}}});
    ASSERT_TRUE(signIn("ada", "pw").result);
    EXPECT_EQ(currentUser().value_or(User{}).username, "ada");
    const auto requests = service.counters().requests;
    EXPECT_EQ(currentUser().value_or(User{}).username, "ada");
    EXPECT_EQ(service.counters().requests, requests) << "a hit costs no network";

    EXPECT_FALSE(await<void>([&](auto done) { api->logout(done); }).error);
    EXPECT_FALSE(currentUser());
    EXPECT_EQ(signIn("bob", "pw").result.value_or(User{}).username, "bob");
    EXPECT_EQ(currentUser().value_or(User{}).username, "bob");
}

TEST_F(Cache, HoldsNothingOfTheAccessTokenOnDisk) {
    createAccount("ada", "pw");
    service.faults().add({.count = 100, .path = "users/me", .headers = {{"Cache-Control", "max-age=3600"}}});
    install(std::make_shared<Platform::UrlCache>(0, 1U << 20U, folder.string()));
    ASSERT_TRUE(signIn("ada", "pw").result);
    const auto session = service.accounts().findSession(api->username());
    ASSERT_TRUE(session);
    ASSERT_TRUE(await<User>([&](auto done) { api->getCurrentUser(done); }).result);
    install(nullptr);
    std::string files;
    for (const auto& file : std::filesystem::directory_iterator{folder}) {
        files.append(std::istreambuf_iterator<char>{std::ifstream{file.path()}.rdbuf()}, {});
    }
    EXPECT_THAT(files, ::testing::HasSubstr("max-age=3600"));
    EXPECT_THAT(files, ::testing::Not(::testing::HasSubstr(session->secret)));
}

TEST_F(Cache, KeepsConfirmedAnswersForAnotherRunOfTheProgram) {
    const auto countries = [&] {
        return await<std::vector<Country>>([&](auto done) { api->getCountries(ServerProfile::general, {}, {}, done); })
            .result;
    };
    install(std::make_shared<Platform::UrlCache>(0, 1U << 22U, folder.string()));
    const auto first = countries();
    ASSERT_TRUE(first);
    install(std::make_shared<Platform::UrlCache>(1U << 22U, 1U << 22U, folder.string()));
    EXPECT_EQ(countries().value_or(std::vector<Country>{}).size(), first->size());
    EXPECT_THAT(lastCondition(), ::testing::StartsWith("If-Modified-Since: ")) << "the service itself sends validators";
    EXPECT_EQ(service.counters().requests, 2U);
}

TEST_F(Cache, WithALimitOfItsOwnFetchesAgainWhatItRefuses) {
    install(std::make_shared<CustomUrlCache>(1U << 20U, 0, std::nullopt));
    order({{"Cache-Control", "max-age=3600"}}, std::nullopt, 2);
    ASSERT_TRUE(status());
    ASSERT_TRUE(status()) << "answered when the first has been stored, and its time noted";
    now = now.load() + seconds{600};
    ASSERT_TRUE(status());
    EXPECT_EQ(service.counters().requests, 1U);
    now = now.load() + seconds{1};
    ASSERT_TRUE(status());
    EXPECT_EQ(service.counters().requests, 2U);
}

TEST_F(Cache, IsNoneUntilOneIsInstalled) {
    use(sessionConfiguration());
    order({{"Cache-Control", "max-age=3600"}}, std::nullopt, 3);
    ASSERT_TRUE(status());
    ASSERT_TRUE(status());
    EXPECT_EQ(service.counters().requests, 2U);
    Platform::UrlCache::setShared(cache);
    ASSERT_TRUE(status());
    ASSERT_TRUE(status());
    Platform::UrlCache::setShared(nullptr);
    EXPECT_EQ(service.counters().requests, 3U);
}

TEST_F(Cache, GivesUpAnAnswerThatAnotherRequestMakesInvalid) {
    using Platform::HttpMethod;
    auto configuration = sessionConfiguration();
    configuration.cache = cache;
    const auto session = Platform::makeHttpSession(configuration);
    service.faults().add({.count = 100, .method = "GET", .body = "x", .headers = {{"Cache-Control", "max-age=9"}}});
    service.faults().add({.count = 1, .method = "PUT", .status = 500});
    service.faults().add({.count = 100, .status = 200});
    const struct {
        HttpMethod method = HttpMethod::get;
        Platform::HttpAnswer::Source source = Platform::HttpAnswer::Source::network;
        std::uint64_t requests = 0;
    } rows[] = {
        {HttpMethod::get, Platform::HttpAnswer::Source::network, 1},
        {HttpMethod::get, Platform::HttpAnswer::Source::cache, 1},
        {HttpMethod::options, Platform::HttpAnswer::Source::network, 2},
        {HttpMethod::put, Platform::HttpAnswer::Source::network, 3},
        {HttpMethod::get, Platform::HttpAnswer::Source::cache, 3},
        {HttpMethod::put, Platform::HttpAnswer::Source::network, 4},
        {HttpMethod::get, Platform::HttpAnswer::Source::network, 5},
    };
    for (const auto& row : rows) {
        std::optional<Platform::HttpAnswer> answer;
        session->send(std::make_shared<const Platform::HttpRequest>(
                          row.method, *Platform::Url::fromString("https://" + service.apiHost() + "/vb/x"),
                          Platform::Parameters{}, Platform::ParameterEncoding::url, Platform::HttpHeaders{}),
                      [&](auto received) { answer = std::move(received); });
        runUntil([&] { return answer.has_value(); });
        EXPECT_FALSE(answer->error);
        EXPECT_EQ(answer->source, row.source);
        EXPECT_EQ(service.counters().requests, row.requests);
    }
}

TEST_F(Cache, OnASlowDiskDelaysNobodyAndEndsWithTheSession) {
    class Slow final : public Platform::UrlCache {
    public:
        Slow() : UrlCache{0, 0, std::nullopt} {}
        std::shared_ptr<const Platform::CachedUrlResponse> cachedResponse(const Platform::HttpRequest&) override {
            asked.set_value();
            released.get_future().wait();
            return nullptr;
        }
        std::promise<void> asked, released;
    };
    const auto slow = std::make_shared<Slow>();
    auto configuration = sessionConfiguration();
    configuration.cache = slow;
    auto session = Platform::makeHttpSession(configuration);
    std::vector<Platform::HttpAnswer> answers;
    session->send(std::make_shared<const Platform::HttpRequest>(
                      Platform::HttpMethod::get, *Platform::Url::fromString("https://" + service.apiHost() + "/"),
                      Platform::Parameters{}, Platform::ParameterEncoding::url, Platform::HttpHeaders{}),
                  [&](auto answer) { answers.push_back(std::move(answer)); });
    slow->asked.get_future().wait();
    use(sessionConfiguration());
    EXPECT_TRUE(status()) << "others go on";
    session = nullptr;
    slow->released.set_value();
    runUntil([&] { return !answers.empty(); });
    ASSERT_TRUE(answers.front().error);
    EXPECT_EQ(answers.front().error->kind, Platform::HttpError::Kind::cancelled);
    EXPECT_EQ(service.counters().requests, 1U);
}

}  // namespace
}  // namespace Tarnwick_API
