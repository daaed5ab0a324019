// What a cache keeps and gives, in memory and on the disk.

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include "CachedAnswers.hpp"
#include "TemporaryFolder.hpp"

#include <cstdlib>
#include <limits>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

constexpr std::size_t plenty = 1'000'000;

class UrlCacheTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<UrlCache> open(std::size_t memory, std::size_t disk) const {
        return std::make_unique<UrlCache>(memory, disk, folder.path() / "cache");
    }

    TemporaryFolder folder;
};

TEST_F(UrlCacheTest, KeepsWhatWasUsedLastWithinItsCapacities) {
    const struct {
        // "a40": store 40 bytes as a; "?a": look up; "-a": remove; "*": remove all; "=50": set the capacity;
        // "~": close and open again.
        std::string steps, left;
        std::size_t usage = 0;
    } rows[] = {
        {"a40 b40", "ab", 80},
        {"a40 b60", "ab", 100},
        {"a40 b40 c40", "bc", 80},
        {"a40 b40 ?a c40", "ac", 80},
        {"a40 b40 ?a ?b ?a ?a c40", "ac", 80},
        {"a40 b40 ?a c20 ?b d40", "bcd", 100},
        {"a40 b40 a40 c40", "ac", 80},
        {"a40 b40 a30", "ab", 70},
        {"a30 b30 c30 d70", "cd", 100},
        {"a40 b40 c99", "c", 99},
        {"a40 b100", "a", 40},
        {"a40 b40 a100", "b", 40},
        {"a40 a101", "", 0},
        {"a40 b40 =80", "ab", 80},
        {"a40 b40 ?a =79", "a", 40},
        {"a40 =0", "", 0},
        {"a40 =0 =100", "", 0},
        {"=0 a40 =100", "", 0},
        {"a40 =0 a30 =100 b40", "b", 40},
        {"=20 a40", "", 0},
        {"=200 a99 b99", "ab", 198},
        {"a40 b40 -a -c", "b", 40},
        {"a40 b40 *", "", 0},
        {"a40 * b40", "b", 40},
    };
    struct Kind {
        std::string name;
        std::size_t memory = 0, disk = 0;
    };
    for (const auto& kind : {Kind{"memory", 100, 0}, Kind{"disk", 0, 100}, Kind{"both", 100, 100}}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(kind.name + ": " + row.steps);
            auto cache = open(kind.memory, kind.disk);
            cache->removeAllCachedResponses();
            std::istringstream steps{row.steps};
            for (std::string step; steps >> step;) {
                const auto path = step.size() > 1 && step[0] != '=' && std::isalpha(step[1]) != 0 ? step.substr(1, 1)
                                                                                                  : step.substr(0, 1);
                if (step[0] == '?') {
                    ASSERT_NE(cache->cachedResponse(get(path)), nullptr);
                } else if (step[0] == '-') {
                    cache->removeCachedResponse(get(path));
                } else if (step[0] == '*') {
                    cache->removeAllCachedResponses();
                } else if (step[0] == '=') {
                    cache->setMemoryCapacity(kind.memory == 0 ? 0 : std::stoul(step.substr(1)));
                    cache->setDiskCapacity(kind.disk == 0 ? 0 : std::stoul(step.substr(1)));
                } else {
                    cache->storeCachedResponse(answerTaking(std::stoul(step.substr(1)), path), get(path));
                }
                EXPECT_LE(cache->currentMemoryUsage(), cache->memoryCapacity());
                EXPECT_LE(cache->currentDiskUsage(), cache->diskCapacity());
            }
            EXPECT_EQ(cache->currentMemoryUsage(), kind.memory == 0 ? 0 : row.usage);
            EXPECT_EQ(cache->currentDiskUsage(), kind.disk == 0 ? 0 : row.usage);
            if (kind.disk != 0) {
                cache.reset();
                cache = open(0, 1000);
            }
            std::string left;
            for (const auto* const path : {"a", "b", "c", "d"}) {
                left += cache->cachedResponse(get(path)) != nullptr ? path : "";
            }
            EXPECT_EQ(left, row.left);
        }
    }
}

TEST_F(UrlCacheTest, RemembersUsesWhenOpenedAgain) {
    for (const std::size_t memory : {0, 100}) {
        open(memory, 100)->removeAllCachedResponses();
        for (const auto* const path : {"a", "b"}) {
            open(memory, 100)->storeCachedResponse(answerTaking(40, path), get(path));
        }
        EXPECT_NE(open(memory, 100)->cachedResponse(get("a")), nullptr);
        open(memory, 100)->storeCachedResponse(answerTaking(40, "c"), get("c"));
        EXPECT_NE(open(memory, 100)->cachedResponse(get("a")), nullptr);
        EXPECT_EQ(open(memory, 100)->cachedResponse(get("b")), nullptr);
    }
    const auto cache = open(0, plenty);
    for (int number = 0; number < 2500; ++number) {  // more than are noted without being written
        const auto path = std::to_string(number);
        cache->storeCachedResponse(answerTaking(100, path), get(path));
    }
    for (int number = 0; number < 1250; ++number) {
        ASSERT_NE(cache->cachedResponse(get(std::to_string(number))), nullptr);
    }
    cache->setDiskCapacity(125'000);
    EXPECT_NE(cache->cachedResponse(get("0")), nullptr);
    EXPECT_NE(cache->cachedResponse(get("1249")), nullptr);
    EXPECT_EQ(cache->cachedResponse(get("1250")), nullptr);
    EXPECT_EQ(cache->cachedResponse(get("2499")), nullptr);
}

TEST_F(UrlCacheTest, TellsRequestsApartByMethodAndUrl) {
    const auto request = [](HttpMethod method, std::string_view url, HttpHeaders headers = {}) {
        return HttpRequest{method, Url::fromString(url).value(), {}, ParameterEncoding::url, std::move(headers)};
    };
    const auto stored = request(HttpMethod::get, "https://u@api.example:1/Path?q=1");
    const struct {
        HttpRequest request;
        bool isSame = false;
    } rows[] = {
        {stored, true},
        {request(HttpMethod::get, "HTTPS://u@API.Example:1/Path?q=1#part", {{"Accept", "x"}}), true},
        {request(HttpMethod::head, "https://u@api.example:1/Path?q=1"), false},
        {request(HttpMethod::get, "http://u@api.example:1/Path?q=1"), false},
        {request(HttpMethod::get, "https://U@api.example:1/Path?q=1"), false},
        {request(HttpMethod::get, "https://u@api.example:2/Path?q=1"), false},
        {request(HttpMethod::get, "https://u@api.example:1/path?q=1"), false},
        {request(HttpMethod::get, "https://u@api.example:1/Path?q=2"), false},
        {request(HttpMethod::get, "https://u@api.example:1/Path?Q=1"), false},
        {request(HttpMethod::get, "https://u@api.example:1/Path"), false},
        {request(HttpMethod::get, "relative"), false},
    };
    for (const auto& [memory, disk] : {std::pair{plenty, std::size_t{0}}, std::pair{std::size_t{0}, plenty}}) {
        const auto cache = open(memory, disk);
        cache->storeCachedResponse(answer("x"), stored);
        for (const auto& row : rows) {
            EXPECT_EQ(cache->cachedResponse(row.request) != nullptr, row.isSame) << row.request.url().absoluteString();
        }
    }
}

TEST_F(UrlCacheTest, GivesBackEveryTypeAndCopiesNothing) {
    const UserInformation everything{
        {"text", "t\0\xFF"},
        {"empty", ""},
        {"integer", std::numeric_limits<std::int64_t>::min()},
        {"real", 600.0},
        {"yes", true},
        {"no", false},
        {"date", WallTime{std::chrono::microseconds{-1}}},
        {"bytes", UserInformationBytes{Bytes{"\0x", 2}}},
        {"no bytes", UserInformationBytes{}},
    };
    for (const auto& information : {std::optional{everything}, std::optional{UserInformation{}}, {}}) {
        auto response = *answer({"a\0b", 3}, information);
        response.response = {404, {{"date", "x"}, {"", ""}}};
        const auto stored = std::make_shared<const CachedUrlResponse>(std::move(response));
        const auto cache = open(plenty, plenty);
        cache->storeCachedResponse(stored, get("a"));
        EXPECT_EQ(cache->cachedResponse(get("a")), stored);
        const auto other = open(plenty, plenty);
        const auto found = other->cachedResponse(get("a"));
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->response.status, 404);
        EXPECT_EQ(found->response.headers, stored->response.headers);
        EXPECT_EQ(*found->body, (Bytes{"a\0b", 3}));
        EXPECT_EQ(found->userInformation, information);
        EXPECT_EQ(found->storagePolicy, UrlCacheStoragePolicy::allowed);
        EXPECT_EQ(other->cachedResponse(get("a")), found) << "in memory by now";
        EXPECT_EQ(other->currentMemoryUsage(), cache->currentDiskUsage());
    }
}

TEST_F(UrlCacheTest, HeedsThePolicies) {
    using Policy = UrlCacheStoragePolicy;
    const struct {
        std::shared_ptr<const CachedUrlResponse> response;
        std::string now, afterwards;
    } rows[] = {
        {answer("new"), "new", "new"},
        {answer("new", {}, Policy::allowedInMemoryOnly), "new", "-"},
        {answer("new", {}, Policy::notAllowed), "old", "old"},
        {answer(std::string(2000, 'x'), {}, Policy::notAllowed), "old", "old"},
        {nullptr, "old", "old"},
        {std::make_shared<const CachedUrlResponse>(), "", ""},
    };
    for (const auto& row : rows) {
        auto cache = open(1000, 1000);
        cache->storeCachedResponse(answer("old"), get("a"));
        cache->storeCachedResponse(row.response, get("a"));
        EXPECT_EQ(bodyIn(*cache, "a"), row.now);
        cache.reset();
        EXPECT_EQ(bodyIn(*open(1000, 1000), "a"), row.afterwards);
    }
}

TEST_F(UrlCacheTest, RemovesAnEntryOnlyWhileItIsTheSame) {
    const auto old = answer("old", UserInformation{{"n", 1.0}});
    for (const auto& [memory, disk] : {std::pair{plenty, std::size_t{0}}, std::pair{std::size_t{0}, plenty}}) {
        const auto cache = open(memory, disk);
        for (const auto& newer :
             {answer("new", UserInformation{{"n", 1.0}}), answer("old", UserInformation{{"n", true}}), answer("old")}) {
            cache->storeCachedResponse(newer, get("a"));
            cache->removeCachedResponseIfStill(old, get("a"));
            EXPECT_NE(cache->cachedResponse(get("a")), nullptr);
        }
        cache->storeCachedResponse(answer("old", UserInformation{{"n", 1.0}}), get("a"));
        cache->removeCachedResponseIfStill(nullptr, get("a"));
        EXPECT_NE(cache->cachedResponse(get("a")), nullptr);
        cache->removeCachedResponseIfStill(old, get("a"));
        EXPECT_EQ(cache->cachedResponse(get("a")), nullptr);
    }
}

TEST(SharedUrlCache, IsTheHostsOrOneOfItsOwnWhichSessionsDoNotUse) {
    EXPECT_EQ(UrlCache::installed(), nullptr);
    const auto own = UrlCache::shared();
    EXPECT_EQ(UrlCache::shared(), own);
    EXPECT_EQ(UrlCache::installed(), nullptr);
    EXPECT_EQ(own->memoryCapacity(), 4U * 1024 * 1024);
    EXPECT_EQ(own->diskCapacity(), 20U * 1024 * 1024);
    const auto hosts = std::make_shared<UrlCache>(1, 0, std::nullopt);
    UrlCache::setShared(hosts);
    EXPECT_EQ(UrlCache::shared(), hosts);
    EXPECT_EQ(UrlCache::installed(), hosts);
    UrlCache::setShared(nullptr);
    EXPECT_EQ(UrlCache::shared(), own);
    EXPECT_EQ(UrlCache::installed(), nullptr);
}

TEST_F(UrlCacheTest, LiesInTheCacheFolderOfTheApplication) {
    Bundle::setMain(Bundle{{{"CFBundleIdentifier", "org.example.App"}}});
    ASSERT_EQ(::setenv("XDG_CACHE_HOME", folder.path().c_str(), 1), 0);
    EXPECT_EQ(UrlCache::defaultPath(), folder.path() / "org.example.App");
    UrlCache{}.storeCachedResponse(answer("x"), get("a"));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "org.example.App" / "Cache.db"));
    ASSERT_EQ(::setenv("XDG_CACHE_HOME", "relative", 1), 0);
    ASSERT_EQ(::setenv("HOME", "/home/u", 1), 0);
    EXPECT_EQ(UrlCache::defaultPath(), "/home/u/.cache/org.example.App");
    Bundle::setMain({});
}

}  // namespace
}  // namespace Tarnwick_API::Platform
