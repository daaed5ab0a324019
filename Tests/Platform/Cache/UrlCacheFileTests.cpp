// What lies on the disk, and what becomes of it when the disk, the rights or the file are not as they should be.

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "CachedAnswers.hpp"
#include "ChildProcess.hpp"
#include "TemporaryFolder.hpp"

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace Tarnwick_API::Platform {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t capacity = 100'000;

std::string contentOf(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream{path, std::ios::binary}.rdbuf();
    return std::move(content).str();
}

void writeFile(const fs::path& path, std::string_view content) {
    std::ofstream{path, std::ios::binary} << content;
}

using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

/// Runs `sql` on the file; what it locks stays so until the connection goes.
Connection runSql(const fs::path& file, const std::string& sql) {
    sqlite3* opened = nullptr;
    EXPECT_EQ(sqlite3_open(file.c_str(), &opened), SQLITE_OK);
    Connection connection{opened, &sqlite3_close};
    EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
    return connection;
}

class UrlCacheFile : public ::testing::Test {
protected:
    void SetUp() override {
        Logging::setSink([this](const auto&... /*entry*/) { ++complaints; });
    }

    [[nodiscard]] UrlCache open(std::size_t memory = capacity) const {
        return UrlCache{memory, capacity, file.parent_path()};
    }

    /// Stores "a" and "b" of 5000 bytes, and closes the file.
    void makeGoodFile() const {
        auto cache = open();
        for (const auto* const path : {"a", "b"}) {
            cache.storeCachedResponse(answer(std::string(5000, path[0]), UserInformation{{"n", 1.0}}), get(path));
        }
    }

    /// What is in the folder: sizes and contents of files, targets of links.
    [[nodiscard]] std::map<std::string, std::string> everything() const {
        std::map<std::string, std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator{folder.path()}) {
            const auto kind = entry.symlink_status().type();
            found[entry.path()] = kind == fs::file_type::regular   ? contentOf(entry.path())
                                  : kind == fs::file_type::symlink ? fs::read_symlink(entry.path()).string()
                                                                   : "";
        }
        return found;
    }

    TemporaryFolder folder;
    fs::path file = folder.path() / "made" / "for it" / "Cache.db";
    int complaints = 0;
    ScopedProcessValues scope;
};

TEST_F(UrlCacheFile, IsPrivateAndMadeByAStoreOnly) {
    const auto mask = ::umask(0);
    {
        auto cache = open();
        EXPECT_EQ(bodyIn(cache, "a"), "-");
        cache.removeCachedResponse(get("a"));
        cache.removeAllCachedResponses();
        cache.setDiskCapacity(capacity - 1);
        EXPECT_EQ(cache.currentDiskUsage(), 0U);
        cache.storeCachedResponse(answer(std::string(capacity, 'x')), get("a"));
        EXPECT_TRUE(fs::is_empty(folder.path()));
        cache.storeCachedResponse(answer("x"), get("a"));
        int files = 0;
        for (const auto& entry : fs::recursive_directory_iterator{folder.path()}) {
            files += entry.is_regular_file() ? 1 : 0;
            EXPECT_EQ(entry.status().permissions(), fs::perms{entry.is_directory() ? 0700U : 0600U}) << entry.path();
        }
        EXPECT_GT(files, 1) << "the log is looked at too";
    }
    ::umask(mask);
    fs::permissions(file, fs::perms{0644});
    auto cache = open();
    EXPECT_EQ(bodyIn(cache, "a"), "x");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0600}) << "a restored copy is closed to others again";
    UrlCache off{capacity, 0, folder.path() / "off"};
    off.storeCachedResponse(answer("x"), get("a"));
    UrlCache homeless{capacity, capacity, ""};
    homeless.storeCachedResponse(answer("x"), get("a"));
    EXPECT_EQ(bodyIn(homeless, "a"), "x");
    EXPECT_FALSE(fs::exists(folder.path() / "off"));
    EXPECT_EQ(complaints, 0);
}

TEST_F(UrlCacheFile, IsLeftAloneWhenItIsNoGoodAndTheCacheGoesOnInMemory) {
    makeGoodFile();
    const auto good = contentOf(file);
    const auto with = [&](std::size_t at, const std::string& bytes) {
        auto changed = good;
        return changed.replace(at, bytes.size(), bytes);
    };
    const auto elsewhere = folder.path() / "elsewhere";
    writeFile(elsewhere, "the user's");
    const auto content = [&](const std::string& bytes) { return [&, bytes] { writeFile(file, bytes); }; };
    const struct {
        std::string name;
        std::function<void()> make;
    } rows[] = {
        {"text", content(std::string(5000, 'x'))},
        {"short text", content("xy")},
        {"cut in the header", content(good.substr(0, 60))},
        {"cut in the first page", content(good.substr(0, 700))},
        {"cut after the first page", content(good.substr(0, 4096))},
        {"later version", content(with(63, "\2"))},
        {"other program", content(with(68, "other"))},
        {"first page damaged", content(with(100, std::string(3900, '\xEE')))},
        {"all other pages damaged", content(with(4096, std::string(good.size() - 4096, '\xEE')))},
        {"other tables", content(with(good.find("CREATE TABLE entry"), "CREATE TABLE other"))},
        {"foreign database on one page", [&] { runSql(file, "CREATE VIEW v AS SELECT 1"); }},
        {"foreign database with a log",
         [&] {
             runSql(file, "PRAGMA journal_mode = WAL");
             writeFile(file.string() + "-wal", "a log to be written back");
         }},
        {"link", [&] { fs::create_symlink(elsewhere, file); }},
        {"link to nowhere", [&] { fs::create_symlink(folder.path() / "nowhere", file); }},
        {"link to a good file",
         [&] {
             writeFile(elsewhere, good);
             fs::create_symlink(elsewhere, file);
         }},
        {"linked log",
         [&] {
             writeFile(file, good);
             fs::create_symlink(elsewhere, file.string() + "-wal");
         }},
        {"folder", [&] { fs::create_directory(file); }},
        {"pipe", [&] { ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0); }},
        {"file in place of the folder",
         [&] {
             fs::remove_all(file.parent_path());
             writeFile(file.parent_path(), "x");
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(folder.path() / "made");
        fs::create_directories(file.parent_path());
        row.make();
        const auto before = everything();
        complaints = 0;
        {
            auto cache = open();
            EXPECT_EQ(cache.cachedResponse(get("a")), nullptr);
            cache.storeCachedResponse(answer("new"), get("a"));
            cache.storeCachedResponse(answer("other"), get("c"));
            cache.removeCachedResponse(get("c"));
            cache.setDiskCapacity(10);
            EXPECT_EQ(bodyIn(cache, "a"), "new");
            EXPECT_EQ(bodyIn(cache, "c"), "-");
            cache.removeAllCachedResponses();
            EXPECT_EQ(bodyIn(cache, "a"), "-");
            EXPECT_EQ(cache.currentDiskUsage(), 0U);
        }
        EXPECT_EQ(complaints, 1);
        auto after = everything();
        std::erase_if(after, [&](const auto& found) {  // SQLite's own, beside what it could open
            return !before.contains(found.first) && found.first.starts_with(file.string() + "-");
        });
        EXPECT_TRUE(after == before);
    }
}

TEST_F(UrlCacheFile, GivesNoDamagedEntry) {
    const struct {
        std::string name, damage;
        bool losesBoth = false;
    } rows[] = {
        {"body", "UPDATE content SET body = zeroblob(5000) WHERE id = 1"},
        {"no body", "UPDATE content SET body = x'' WHERE id = 1"},
        {"no head", "UPDATE content SET head = x'' WHERE id = 1"},
        {"head cut", "UPDATE content SET head = substr(head, 1, length(head) - 1) WHERE id = 1"},
        {"head longer", "UPDATE content SET head = CAST(head || x'00' AS BLOB) WHERE id = 1"},
        {"huge length", "UPDATE content SET head = x'0000000000000000FFFFFFFFFFFFFFFF' WHERE id = 1"},
        {"check value", "UPDATE content SET check_value = check_value + 1 WHERE id = 1"},
        {"no content", "DELETE FROM content WHERE id = 1"},
        {"key", "UPDATE entry SET key = 'GET https://h/z' WHERE id = 1"},
        {"keys swapped", "UPDATE entry SET id = id + 10; UPDATE entry SET id = 13 - id", true},
        {"size", "UPDATE entry SET size = size + 1 WHERE id = 1"},
        {"last use", "UPDATE entry SET used = 9223372036854775807 WHERE id = 1; DELETE FROM content WHERE id = 1"},
        {"total too small", "UPDATE total SET size = -5000000000; DELETE FROM content WHERE id = 1"},
        {"total too large", "UPDATE total SET size = 5000000000; DELETE FROM content WHERE id = 1"},
        {"no total", "DELETE FROM total; DELETE FROM content WHERE id = 1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove(file);
        makeGoodFile();
        runSql(file, row.damage);
        auto cache = open();
        EXPECT_EQ(bodyIn(cache, "a"), "-");
        EXPECT_EQ(bodyIn(cache, "z"), "-");
        EXPECT_EQ(bodyIn(cache, "b"), row.losesBoth ? "-" : std::string(5000, 'b'));
        cache.storeCachedResponse(answer("new"), get("a"));
        EXPECT_EQ(bodyIn(cache, "a"), "new");
        EXPECT_TRUE(row.name == "last use" || (cache.currentDiskUsage() > 0 && cache.currentDiskUsage() < 20'000));
    }
}

TEST_F(UrlCacheFile, IsReadButNotWrittenWhenItMayNotBe) {
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    const struct {
        std::string name;
        fs::perms ofFolder{}, ofFile{};
        bool mayRead = false;
        bool isForeign = false;
    } rows[] = {
        {"file", fs::perms{0700}, fs::perms{0400}, true},
        {"folder", fs::perms{0500}, fs::perms{0600}, false},
        {"foreign", fs::perms{0700}, fs::perms{0666}, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        makeGoodFile();
        for (auto place = file; isRoot && place != folder.path().parent_path(); place = place.parent_path()) {
            ASSERT_EQ(::chown(place.c_str(), nobody, nobody), 0);
        }
        if (row.isForeign && (!isRoot || ::chown(file.c_str(), 0, 0) != 0)) {
            continue;
        }
        fs::permissions(file, row.ofFile);
        fs::permissions(file.parent_path(), row.ofFolder);
        const auto before = contentOf(file);
        ChildProcess child{[&] {
            if (isRoot && ::setresuid(nobody, nobody, nobody) != 0) {
                ::_exit(1);
            }
            auto cache = open();
            const bool isRead = (bodyIn(cache, "b") == std::string(5000, 'b')) == row.mayRead;
            cache.storeCachedResponse(answer("new"), get("a"));
            const bool isStored = bodyIn(cache, "a") == "new";
            cache.setMemoryCapacity(0);
            // What was replaced in memory only does not come back from the disk.
            ::_exit(isRead && isStored && bodyIn(cache, "a") == "-" && complaints == 1 ? 0 : 2);
        }};
        EXPECT_EQ(child.wait(), 0);
        EXPECT_TRUE(contentOf(file) == before);
        fs::permissions(file.parent_path(), fs::perms{0700});
        fs::remove_all(folder.path() / "made");
    }
}

TEST_F(UrlCacheFile, MakesGoodWhatAFullDiskRefused) {
    makeGoodFile();
    ChildProcess child{[&] {
        const auto setLimit = [](rlim_t size) {
            const rlimit limit{size, RLIM_INFINITY};
            return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
        };
        auto cache = open();
        bool isGood = setLimit(100);
        cache.storeCachedResponse(answer(std::string(90'000, 'x')), get("a"));
        isGood = isGood && bodyIn(cache, "a").size() == 90'000 && complaints == 1;
        cache.storeCachedResponse(answer("memory"), get("c"));
        cache.setMemoryCapacity(0);
        isGood = isGood && bodyIn(cache, "a") == "-" && bodyIn(cache, "c") == "-" && setLimit(RLIM_INFINITY);
        cache.storeCachedResponse(answer("d"), get("d"));
        ::_exit(isGood && complaints == 1 ? 0 : 1);
    }};
    EXPECT_EQ(child.wait(), 0);
    auto cache = open();
    EXPECT_EQ(bodyIn(cache, "a"), "-") << "the replaced entry has been removed";
    EXPECT_EQ(bodyIn(cache, "b"), std::string(5000, 'b'));
    EXPECT_EQ(bodyIn(cache, "d"), "d");
}

TEST_F(UrlCacheFile, IsDoneWithoutWhileItIsLocked) {
    for (const auto* const lock : {"BEGIN IMMEDIATE", "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE"}) {
        SCOPED_TRACE(lock);
        makeGoodFile();
        complaints = 0;
        auto cache = open(0);
        auto locked = runSql(file, lock);
        const auto begin = std::chrono::steady_clock::now();
        for (const auto* const path : {"a", "c", "d", "e", "f", "g"}) {
            cache.storeCachedResponse(answer("new"), get(path));
            EXPECT_EQ(bodyIn(cache, path), "-") << "neither the new one nor the one it replaces";
        }
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds{2}) << "they wait once in all";
        EXPECT_EQ(complaints, 1);
        locked = nullptr;
        EXPECT_EQ(bodyIn(cache, "b"), std::string(5000, 'b'));
        auto other = open(0);
        EXPECT_EQ(bodyIn(other, "a"), "-") << "the replaced one is gone for others too, without a further change";
        cache.storeCachedResponse(answer("new"), get("a"));
        EXPECT_EQ(bodyIn(other, "a"), "new");
        locked = runSql(file, "BEGIN IMMEDIATE");
        cache.removeCachedResponse(get("a"));
        EXPECT_EQ(complaints, 2) << "each time is told";
    }
}

TEST_F(UrlCacheFile, IsSharedAndMadeAnewWhenTheUserRemovesIt) {
    auto first = open(0);
    auto second = open(0);
    first.storeCachedResponse(answer("1"), get("a"));
    EXPECT_EQ(bodyIn(second, "a"), "1");
    second.storeCachedResponse(answer("2"), get("a"));
    EXPECT_EQ(bodyIn(first, "a"), "2");
    fs::remove_all(file.parent_path());
    EXPECT_EQ(bodyIn(first, "a"), "-");
    first.storeCachedResponse(answer("3"), get("a"));
    EXPECT_EQ(bodyIn(second, "a"), "3");
    EXPECT_EQ(complaints, 0);
}

TEST_F(UrlCacheFile, GrowsSmallAgain) {
    auto cache = open(0);
    cache.storeCachedResponse(answer(std::string(90'000, 'x')), get("a"));
    cache.removeAllCachedResponses();
    runSql(file, "PRAGMA wal_checkpoint(TRUNCATE)");
    EXPECT_LT(fs::file_size(file), 50'000U);
}

TEST_F(UrlCacheFile, LetsItsComplaintUseTheCache) {
    fs::create_directories(file);
    auto cache = open();
    std::string seen;
    Logging::setSink([&](const auto&... /*entry*/) { seen = bodyIn(cache, "a"); });
    cache.storeCachedResponse(answer("x"), get("a"));
    EXPECT_EQ(seen, "x");
}

}  // namespace
}  // namespace Tarnwick_API::Platform
