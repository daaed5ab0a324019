// Several processes and threads on one file, one of which dies.

#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include "CachedAnswers.hpp"
#include "ChildProcess.hpp"
#include "TemporaryFolder.hpp"

#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace Tarnwick_API::Platform {
namespace {

constexpr std::size_t diskCapacity = 150'000;
constexpr unsigned paths = 20;

/// Says which entry it belongs to in every piece, and how long it is: parts of two would show.
std::string bodyOf(const std::string& path, unsigned size) {
    const auto piece = path + "/" + std::to_string(size) + ";";
    std::string body;
    while (body.size() < size) {
        body += piece;
    }
    return body;
}

bool isWhole(UrlCache& cache, const std::string& path) {
    const auto found = cache.cachedResponse(get(path));
    if (found == nullptr) {
        return true;
    }
    const auto& body = *found->body;
    return body == bodyOf(path, static_cast<unsigned>(std::stoul(body.substr(body.find('/') + 1))));
}

/// Eight threads that store, read and remove until `isEnough` of their number of steps. Whether all was as it should
/// be.
template <class IsEnough>
bool hammer(UrlCache& cache, IsEnough isEnough) {
    std::atomic<bool> isGood = true;
    std::vector<std::thread> threads;
    for (unsigned seed = 0; seed < 8; ++seed) {
        threads.emplace_back([&, seed] {
            std::mt19937 random{seed};
            for (int step = 0; !isEnough(step); ++step) {
                const auto path = std::to_string(random() % paths);
                const auto choice = random() % 20;
                if (choice < 8) {
                    cache.storeCachedResponse(answer(bodyOf(path, 1 + random() % 40'000)), get(path));
                } else if (choice == 8) {
                    cache.removeCachedResponse(get(path));
                } else if (choice == 9) {
                    cache.removeCachedResponseIfStill(cache.cachedResponse(get(path)), get(path));
                }
                if (!isWhole(cache, path) || cache.currentDiskUsage() > diskCapacity ||
                    cache.currentMemoryUsage() > cache.memoryCapacity()) {
                    isGood = false;
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    return isGood;
}

TEST(UrlCacheProcesses, ReadWholeEntriesAndStayWithinTheCapacityThoughOneIsKilled) {
    const TemporaryFolder folder;
    struct Progress {
        std::atomic<bool> started = false;
        std::atomic<int> steps = 0;
    };
    for (int round = 0; round < 5; ++round) {
        const Shared<Progress> progress;
        ChildProcess victim{[&] {
            UrlCache cache{30'000, diskCapacity, folder.path()};
            progress->started = true;
            hammer(cache, [&](int /*step*/) {
                if (++progress->steps == 200 + 17 * round) {
                    static_cast<void>(std::raise(SIGKILL));
                }
                return false;
            });
        }};
        while (!progress->started) {
            std::this_thread::yield();
        }
        std::atomic<bool> isVictimGone = false;
        int end = 0;
        std::thread waiting{[&] {
            end = victim.wait();
            isVictimGone = true;
        }};
        {
            UrlCache cache{30'000, diskCapacity, folder.path()};
            EXPECT_TRUE(hammer(cache, [&](int step) { return step >= 50 && isVictimGone; }));
        }
        waiting.join();
        ASSERT_TRUE(WIFSIGNALED(end) && WTERMSIG(end) == SIGKILL) << end;
    }
    UrlCache cache{0, diskCapacity, folder.path()};
    std::size_t size = 0;
    for (unsigned path = 0; path < paths; ++path) {
        EXPECT_TRUE(isWhole(cache, std::to_string(path)));
        const auto found = cache.cachedResponse(get(std::to_string(path)));
        size += found == nullptr
                    ? 0
                    : found->body->size() + std::string{"GET https://h/"}.append(std::to_string(path)).size();
    }
    EXPECT_EQ(cache.currentDiskUsage(), size) << "the total is the sum of the entries";
    EXPECT_GT(size, diskCapacity / 3) << "something was kept";
}

TEST(UrlCacheProcesses, StartTogether) {
    constexpr int count = 4;
    for (int round = 0; round < 10; ++round) {
        const TemporaryFolder folder;
        if (round % 2 != 0) {  // one that was killed has begun the file
            sqlite3* opened = nullptr;
            sqlite3_open((folder.path() / "Cache.db").c_str(), &opened);
            sqlite3_exec(opened, "PRAGMA auto_vacuum = INCREMENTAL", nullptr, nullptr, nullptr);
            sqlite3_close(opened);
        }
        const Shared<std::atomic<int>> started;
        std::vector<std::unique_ptr<ChildProcess>> children;
        children.reserve(count);
        for (int number = 0; number < count; ++number) {
            children.push_back(std::make_unique<ChildProcess>([&] {
                UrlCache cache{0, diskCapacity, folder.path()};
                const auto path = std::to_string(number);
                for (++*started; *started < count;) {
                    std::this_thread::yield();
                }
                const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds{10};
                while (bodyIn(cache, path) == "-") {  // stores are skipped while another has the file
                    cache.storeCachedResponse(answer("x"), get(path));
                    if (std::chrono::steady_clock::now() > latest) {
                        ::_exit(1);
                    }
                }
            }));
        }
        for (auto& child : children) {
            EXPECT_EQ(child->wait(), 0) << "a process has lost the disk for good";
        }
    }
}

}  // namespace
}  // namespace Tarnwick_API::Platform
