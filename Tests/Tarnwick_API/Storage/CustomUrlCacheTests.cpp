#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Storage/CustomUrlCache.hpp>

#include "CachedAnswers.hpp"
#include "ChildProcess.hpp"
#include "TemporaryFolder.hpp"

#include <chrono>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using namespace std::chrono_literals;
using Platform::UrlCache;
using Platform::UserInformation;
using Platform::WallClock;
using Platform::WallTime;

constexpr WallTime start{std::chrono::hours{24 * 20'000}};

class CustomUrlCacheTest : public ::testing::Test {
protected:
    void SetUp() override { setClock(start); }

    static void setClock(WallTime now) {
        WallClock::setSource([now] { return now; });
    }

    template <class Cache>
    [[nodiscard]] Cache open() const {
        return Cache{100'000, 100'000, folder.path() / "cache"};
    }

    /// Runs `check` on the cache at hand, on one that reads the disk, and on one in another process.
    void everywhere(CustomUrlCache& cache, const std::function<bool(CustomUrlCache&)>& check) const {
        EXPECT_TRUE(check(cache)) << "in memory";
        auto other = open<CustomUrlCache>();
        EXPECT_TRUE(check(other)) << "from disk";
        ChildProcess child{[&] {
            bool isGood = false;
            {
                auto childs = open<CustomUrlCache>();
                isGood = check(childs);
            }
            ::_exit(isGood ? 0 : 1);
        }};
        EXPECT_EQ(child.wait(), 0) << "in another process";
    }

    TemporaryFolder folder;
    Platform::ScopedProcessValues scope;
};

TEST_F(CustomUrlCacheTest, ServesAnEntryForTenMinutesAndThenRemovesIt) {
    EXPECT_EQ(CustomUrlCache::cachedDateKey, "CachedDate");
    EXPECT_EQ(CustomUrlCache::expireInterval, 600s);
    const struct {
        std::chrono::microseconds age{};
        bool isServed = false;
    } rows[] = {{0s, true},    {599s, true},  {600s, true}, {600s + 1us, false},
                {601s, false}, {100h, false}, {-1s, true},  {-100h, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.age.count());
        setClock(start);
        auto cache = open<CustomUrlCache>();
        const UserInformation given{{"CachedDate", start - 1000h}, {"other", "kept"}};
        cache.storeCachedResponse(answer("x", given), get("a"));
        setClock(start + row.age);
        everywhere(cache, [&](CustomUrlCache& one) {
            const auto found = one.cachedResponse(get("a"));
            return row.isServed
                       ? found != nullptr && *found->body == "x" && found->response.status == 200 &&
                             found->userInformation == UserInformation{{"CachedDate", start}, {"other", "kept"}}
                       : found == nullptr;
        });
        EXPECT_EQ(bodyIn(*std::make_unique<UrlCache>(0, 100'000, folder.path() / "cache"), "a"),
                  row.isServed ? "x" : "-");
    }
}

TEST_F(CustomUrlCacheTest, NeitherServesNorRemovesWhatHasNoDate) {
    const std::optional<UserInformation> rows[] = {
        std::nullopt,
        UserInformation{},
        UserInformation{{"cacheddate", start}},
        UserInformation{{"CachedDate", "2024-10-04T00:00:00Z"}},
        UserInformation{{"CachedDate", 1.7e9}},
        UserInformation{{"CachedDate", std::int64_t{1'700'000'000}}},
    };
    for (const auto& information : rows) {
        auto cache = open<CustomUrlCache>();
        cache.UrlCache::storeCachedResponse(answer("x", information), get("a"));
        setClock(start + 700s);
        everywhere(cache, [](CustomUrlCache& one) {
            return one.cachedResponse(get("a")) == nullptr && one.UrlCache::cachedResponse(get("a")) != nullptr;
        });
        auto plain = open<UrlCache>();
        EXPECT_EQ(bodyIn(plain, "a"), "x");
    }
}

TEST_F(CustomUrlCacheTest, KeepsThePolicyAndAFreshEntryOfAnotherProcess) {
    auto cache = open<CustomUrlCache>();
    cache.storeCachedResponse(nullptr, get("a"));
    cache.storeCachedResponse(answer("x", {}, Platform::UrlCacheStoragePolicy::notAllowed), get("a"));
    EXPECT_EQ(bodyIn(cache, "a"), "-");
    cache.storeCachedResponse(answer("x", {}, Platform::UrlCacheStoragePolicy::allowedInMemoryOnly), get("a"));
    EXPECT_EQ(bodyIn(cache, "a"), "x");
    auto other = open<CustomUrlCache>();
    EXPECT_EQ(bodyIn(other, "a"), "-");

    cache.storeCachedResponse(answer("old"), get("b"));
    setClock(start + 601s);
    other.storeCachedResponse(answer("fresh"), get("b"));
    EXPECT_EQ(bodyIn(cache, "b"), "-") << "memory has the old one";
    EXPECT_EQ(bodyIn(cache, "b"), "fresh");
}

}  // namespace
}  // namespace Tarnwick_API
