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

using Platform::HttpMethod;
using Platform::WallTime;
using Source = Platform::HttpAnswer::Source;
using std::chrono::seconds;
using Headers = std::vector<std::pair<std::string, std::string>>;

/// A client with a cache, and a clock that tests turn.
class Cache : public Testing::ServiceFixture {
protected:
    Cache() {
        Platform::WallClock::setSource([clock = now] { return clock->load(); });
        installFreshCache();
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
            std::chrono::system_clock::to_time_t(std::chrono::floor<seconds>(now->load() + fromNow)));
    }

    /// Lets the service's next answer have these headers, the present date among them unless they say another, and in
    /// place of its own word on caches.
    void order(Headers headers, std::optional<unsigned> status = std::nullopt, std::size_t count = 1) {
        headers.insert(headers.begin(), {{"Date", date()}, {"Cache-Control", ""}});
        service.faults().add({.count = count, .status = status, .headers = std::move(headers)});
    }

    /// The address in the status; none when that is not had.
    std::optional<std::string> address() {
        const auto received = getStatus();
        return received.result ? std::optional{received.result->ip} : std::nullopt;
    }

    /// The user's name; none when that is not had.
    std::optional<std::string> currentUser() {
        const auto received = await<User>([&](auto done) { api->getCurrentUser(std::move(done)); });
        return received.result ? std::optional{received.result->username} : std::nullopt;
    }

    [[nodiscard]] std::shared_ptr<const Platform::HttpRequest> request(HttpMethod method) const {
        return std::make_shared<const Platform::HttpRequest>(
            method, *Platform::Url::fromString("https://" + service.apiHost() + "/vb/x"), Platform::Parameters{},
            Platform::ParameterEncoding::url, Platform::HttpHeaders{});
    }

    void pass(seconds time) { *now = now->load() + time; }

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

    /// A whole second, as dates in headers have no parts of it. Shared with the thread that asks caches.
    std::shared_ptr<std::atomic<WallTime>> now =
        std::make_shared<std::atomic<WallTime>>(std::chrono::floor<seconds>(std::chrono::system_clock::now()));
    std::filesystem::path cacheFolder = folder.path() / "cache";
    std::shared_ptr<Platform::UrlCache> cache;
};

TEST_F(Cache, AnswersByTheRulesForAPrivateCache) {
    const auto control = [](const char* value) { return std::pair<std::string, std::string>{"Cache-Control", value}; };
    const auto dated = [&](const char* name, int fromNow) {
        return std::pair{std::string{name}, date(seconds{fromNow})};
    };
    const auto old = dated("Last-Modified", -99999);
    const auto minute = control("max-age=60");
    const std::pair<std::string, std::string> tag{"ETag", "\"a\""};
    const std::string ifTag = "If-None-Match: \"a\"\n";
    const auto reused = std::nullopt;
    const struct {
        const char* name;
        Headers first;
        int later;
        /// What the second request asked, if there was one.
        std::optional<std::string> asked;
    } rows[] = {
        {"fresh to its last second", {minute}, 59, reused},
        {"stale at its end", {minute}, 60, ""},
        {"a clock set back", {minute}, -1000, reused},
        {"quoted, and in any case", {{"cache-control", "Private=\"a, b\", MAX-AGE=\"60\""}}, 59, reused},
        {"the smaller of two ages", {control("max-age=60, max-age=30")}, 30, ""},
        {"an age that is none", {control("max-age=-1"), dated("Expires", 60)}, 0, ""},
        {"an age beyond all numbers", {control("max-age=99999999999999999999")}, 1'000'000, reused},
        {"an age for shared caches", {control("s-maxage=60")}, 0, ""},
        {"a date of expiry", {dated("Expires", 60)}, 59, reused},
        {"a date of expiry, passed", {dated("Expires", 60)}, 60, ""},
        {"a lifetime counts from Date", {dated("Date", -30), dated("Expires", 10)}, 9, reused},
        {"Expires that is no date", {{"Expires", "0"}}, 0, ""},
        {"Expires in any case", {{"Expires", "tHU, 18 aUG 2050 02:01:18 gmt"}}, 0, reused},
        {"Expires with a short year", {{"Expires", "Thursday, 18-Aug-50 02:01:18 GMT"}}, 0, reused},
        {"a short year long gone", {{"Expires", "Wednesday, 18-Aug-99 02:01:18 GMT"}}, 0, ""},
        {"Expires without a zone", {{"Expires", "Mon Aug  8 02:01:18 2050"}}, 0, reused},
        {"another zone", {{"Expires", "Thu, 18 Aug 2050 02:01:18 UTC"}}, 0, ""},
        {"no century", {{"Expires", "Thu, 18 Aug 50 02:01:18 GMT"}}, 0, ""},
        {"no comma", {{"Expires", "Thu 18 Aug 2050 02:01:18 GMT"}}, 0, ""},
        {"double blanks", {{"Expires", "Thu,  18  Aug  2050  02:01:18  GMT"}}, 0, ""},
        {"dashes", {{"Expires", "Thu, 18-Aug-2050 02:01:18 GMT"}}, 0, ""},
        {"an hour of one digit", {{"Expires", "Thu, 18 Aug 2050 2:01:18 GMT"}}, 0, ""},
        {"a day that no month has", {{"Expires", "Thu, 31 Feb 2050 02:01:18 GMT"}}, 0, ""},
        {"max-age before Expires", {control("max-age=10"), dated("Expires", 60)}, 10, ""},
        {"older when it came, says Age", {minute, {"Age", "30"}}, 30, ""},
        {"still fresh with Age", {minute, {"Age", "30"}}, 29, reused},
        {"Age that is none", {minute, {"Age", "x"}}, 59, reused},
        {"older by its Date", {minute, dated("Date", -30)}, 30, ""},
        {"a Date to come", {minute, dated("Date", 500)}, 59, reused},
        {"nothing said", {}, 0, ""},
        {"a validator alone", {tag}, 0, ifTag},
        {"no lifetime is guessed", {old}, 0, "If-Modified-Since: " + old.second + "\n"},
        {"both validators", {tag, {"Last-Modified", "x"}}, 0, "If-Modified-Since: x\n" + ifTag},
        {"stale with a validator", {minute, {"ETag", "W/\"a\""}}, 60, "If-None-Match: W/\"a\"\n"},
        {"to be confirmed always", {control("max-age=60, no-cache"), tag}, 0, ifTag},
        {"to be confirmed in part", {control("no-cache=\"x, y\", max-age=60"), tag}, 0, ifTag},
        {"not to be stored", {control("max-age=60, no-store"), tag}, 0, ""},
        {"varies with the same", {minute, {"Vary", "Accept-Language, x-none"}}, 0, reused},
        {"varies with everything", {minute, {"Vary", "Accept, *"}, tag}, 0, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        installFreshCache();
        service.reset();
        order(row.first);
        const auto first = address();
        ASSERT_TRUE(first);
        pass(seconds{row.later});
        EXPECT_EQ(address(), first);
        EXPECT_EQ(service.counters().requests, row.asked ? 2U : 1U);
        EXPECT_EQ(lastCondition(), row.asked.value_or(""));
        pass(seconds{-row.later});
    }
}

TEST_F(Cache, UsesWhatTheServerConfirms) {
    order({{"ETag", "\"a\""}, {"Cache-Control", "max-age=10"}});
    const auto first = address();
    pass(seconds{10});
    order({{"ETag", "W/\"a\""}, {"Cache-Control", "max-age=100"}}, 304);
    EXPECT_EQ(address(), first);
    pass(seconds{99});
    EXPECT_EQ(address(), first);
    EXPECT_EQ(service.counters().requests, 2U) << "the confirmation has made it fresh again";

    pass(seconds{1});
    service.faults().add({.status = 503, .body = "later"});
    EXPECT_FALSE(address()) << "nothing stale is given out";
    order({{"ETag", "\"b\""}}, 304);
    EXPECT_EQ(address(), first) << "the whole answer is fetched when the server confirms another";
    EXPECT_EQ(service.counters().requests, 5U);
    EXPECT_EQ(lastCondition(), "");
}

TEST_F(Cache, TellsHeadersApartThatTheAnswerVariesWith) {
    order({{"Cache-Control", "max-age=60"}, {"Vary", "accept-language"}}, std::nullopt, 2);
    EXPECT_TRUE(address());
    Platform::Locale::setIdentifierLookup([] { return std::string{"fr_FR"}; });
    install(cache);
    EXPECT_TRUE(address());
    EXPECT_EQ(service.counters().requests, 2U);
    EXPECT_TRUE(address());
    EXPECT_EQ(service.counters().requests, 2U);
}

TEST_F(Cache, NeverAnswersWithAnotherAccountsData) {
    createAccount("ada", "pw");
    createAccount("bob", "pw");
    service.faults().add({.count = 100, .path = "users/me", .headers = {{"Cache-Control", "max-age=3600"}}});
    ASSERT_TRUE(signIn("ada", "pw").result);
    EXPECT_EQ(currentUser(), "ada");
    const auto requests = service.counters().requests;
    EXPECT_EQ(currentUser(), "ada");
    EXPECT_EQ(service.counters().requests, requests) << "a hit costs no network";

    EXPECT_FALSE(await<void>([&](auto done) { api->logout(std::move(done)); }).error);
    EXPECT_FALSE(currentUser());
    EXPECT_EQ(signIn("bob", "pw").result.value_or(User{}).username, "bob");
    EXPECT_EQ(currentUser(), "bob");
}

TEST_F(Cache, HoldsNothingOfTheAccessTokenOnDisk) {
    createAccount("ada", "pw");
    service.faults().add({.count = 100, .path = "users/me", .headers = {{"Cache-Control", "max-age=3600"}}});
    install(std::make_shared<Platform::UrlCache>(0, 1U << 20U, cacheFolder));
    ASSERT_TRUE(signIn("ada", "pw").result);
    const auto session = service.accounts().findSession(api->username());
    ASSERT_TRUE(session);
    ASSERT_TRUE(currentUser());
    install(nullptr);
    std::string files;
    for (const auto& file : std::filesystem::directory_iterator{cacheFolder}) {
        files.append(std::istreambuf_iterator<char>{std::ifstream{file.path()}.rdbuf()}, {});
    }
    EXPECT_THAT(files, ::testing::HasSubstr("max-age=3600"));
    EXPECT_THAT(files, ::testing::Not(::testing::HasSubstr(session->secret)));
}

TEST_F(Cache, KeepsConfirmedAnswersForAnotherRunOfTheProgram) {
    const auto countries = [&] {
        return await<std::vector<Country>>(
                   [&](auto done) { api->getCountries(ServerProfile::general, {}, {}, std::move(done)); })
            .result;
    };
    install(std::make_shared<Platform::UrlCache>(0, 1U << 22U, cacheFolder));
    const auto first = countries();
    ASSERT_TRUE(first);
    install(std::make_shared<Platform::UrlCache>(1U << 22U, 1U << 22U, cacheFolder));
    EXPECT_EQ(countries().value_or(std::vector<Country>{}).size(), first->size());
    EXPECT_THAT(lastCondition(), ::testing::StartsWith("If-Modified-Since: ")) << "the service itself sends validators";
    EXPECT_EQ(service.counters().requests, 2U);
}

TEST_F(Cache, WithALimitOfItsOwnFetchesAgainWhatItRefuses) {
    install(std::make_shared<CustomUrlCache>(1U << 20U, 0, std::nullopt));
    order({{"Cache-Control", "max-age=3600"}}, std::nullopt, 2);
    ASSERT_TRUE(address());
    ASSERT_TRUE(address()) << "answered when the first has been stored, and its time noted";
    pass(seconds{600});
    ASSERT_TRUE(address());
    EXPECT_EQ(service.counters().requests, 1U);
    pass(seconds{1});
    ASSERT_TRUE(address());
    EXPECT_EQ(service.counters().requests, 2U);
}

TEST_F(Cache, IsNoneUntilOneIsInstalled) {
    use(sessionConfiguration());
    order({{"Cache-Control", "max-age=3600"}}, std::nullopt, 3);
    ASSERT_TRUE(address());
    ASSERT_TRUE(address());
    EXPECT_EQ(service.counters().requests, 2U);
    Platform::UrlCache::setShared(cache);
    ASSERT_TRUE(address());
    ASSERT_TRUE(address());
    EXPECT_EQ(service.counters().requests, 3U);
}

TEST_F(Cache, GivesUpAnAnswerThatAnotherRequestMakesInvalid) {
    auto configuration = sessionConfiguration();
    configuration.cache = cache;
    const auto session = Platform::makeHttpSession(configuration);
    service.faults().add({.path = "y", .status = 500});
    service.faults().add({.count = 100, .method = "GET", .body = "x", .headers = {{"Cache-Control", "max-age=9"}}});
    service.faults().add({.method = "PUT", .status = 500});
    service.faults().add({.method = "PUT", .status = 200});
    service.faults().add({.method = "PUT", .status = 303, .headers = {{"Location", "/vb/y"}}});
    service.faults().add({.count = 100, .status = 200});
    const struct {
        HttpMethod method = HttpMethod::get;
        Source source = Source::network;
        std::uint64_t requests = 0;
    } rows[] = {
        {HttpMethod::get, Source::network, 1},     {HttpMethod::get, Source::cache, 1},
        {HttpMethod::options, Source::network, 2}, {HttpMethod::put, Source::network, 3},
        {HttpMethod::get, Source::cache, 3},       {HttpMethod::put, Source::network, 4},
        {HttpMethod::get, Source::network, 5},     {HttpMethod::put, Source::network, 7},
        {HttpMethod::get, Source::network, 8},
    };
    for (const auto& row : rows) {
        std::optional<Platform::HttpAnswer> answer;
        session->send(request(row.method), [&](auto received) { answer = std::move(received); });
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
    session->send(request(HttpMethod::get), [&](auto answer) { answers.push_back(std::move(answer)); });
    slow->asked.get_future().wait();
    use(sessionConfiguration());
    EXPECT_TRUE(address()) << "others go on";
    session = nullptr;
    slow->released.set_value();
    runUntil([&] { return !answers.empty(); });
    ASSERT_TRUE(answers.front().error);
    EXPECT_EQ(answers.front().error->kind, Platform::HttpError::Kind::cancelled);
    EXPECT_EQ(service.counters().requests, 1U);
}

}  // namespace
}  // namespace Tarnwick_API
