// What lies on the disk, and what becomes of it when the disk, the rights or the file are not as they should be.

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "ChildProcess.hpp"
#include "PrintKeychainStatus.hpp"
#include "TemporaryFolder.hpp"
#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include <array>
#include <csignal>
#include <fstream>
#include <list>
#include <optional>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace Tarnwick_API::Platform {
namespace {

namespace fs = std::filesystem;

constexpr auto success = KeychainStatus::success;
constexpr auto itemNotFound = KeychainStatus::itemNotFound;
constexpr auto invalidKeychain = KeychainStatus::invalidKeychain;

const KeychainQuery query{"s", {}};
const KeychainItem item{"s", "a", "the old secret", "label", {}, "comment"};

mode_t modeOf(const fs::path& path) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0 ? found.st_mode & ALLPERMS : 0;
}

std::string contentOf(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream{path, std::ios::binary}.rdbuf();
    return std::move(content).str();
}

void writeFile(const fs::path& path, std::string_view content) {
    std::ofstream{path, std::ios::binary} << content;
}

/// What look-up, update, addition and removal answer, in this order.
using Statuses = std::array<KeychainStatus, 4>;

Statuses everyCall(KeychainStore& store) {
    const auto found = store.copyMatching(query, {.attributes = true, .data = true}).status;
    const auto updated = store.update(query, {.data = "new"});
    const auto added = store.add({"s", "another", Bytes(100'000, 'x'), "", {}, ""});
    const auto removed = store.remove(query);
    return {found, updated, added, removed};
}

void runSql(const fs::path& path, const char* sql) {
    sqlite3* opened = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &opened), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(opened, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(opened);
}

class FileKeychain : public ::testing::Test {
protected:
    /// What `prepare` and then every call give in a child process; none when the machine refuses the preparation.
    template <class Prepare>
    std::optional<Statuses> everyCallInChild(Prepare prepare) {
        struct Report {
            bool prepared = false;
            KeychainStatus state = success;
            Statuses statuses{};
        };
        const Shared<Report> report;
        ChildProcess child{[&] {
            if (prepare()) {
                FileKeychainStore store{file};
                report->state = store.state().status;
                report->statuses = everyCall(store);
                report->prepared = true;
            }
        }};
        EXPECT_EQ(child.wait(), 0);
        state = report->state;
        return report->prepared ? std::optional{report->statuses} : std::nullopt;
    }

    TemporaryFolder folder;
    fs::path file = folder.path() / "made" / "for it" / "keychain.sqlite";
    /// What the store in that child said of itself.
    KeychainStatus state = success;
};

TEST_F(FileKeychain, IsPrivateWhateverTheMask) {
    const auto mask = ::umask(0);
    FileKeychainStore store{file};
    const auto added = store.add(item);
    ::umask(mask);
    EXPECT_EQ(added, success);
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(modeOf(file.parent_path()), 0700U);
    EXPECT_EQ(modeOf(file.parent_path().parent_path()), 0700U);
    EXPECT_EQ(std::distance(fs::directory_iterator{file.parent_path()}, {}), 1) << "no second file is left";

    fs::permissions(file, fs::perms{0644});
    EXPECT_EQ(store.copyMatching(query, {}).status, success);
    EXPECT_EQ(modeOf(file), 0600U) << "a restored copy is closed to others again";
}

TEST_F(FileKeychain, IsMadeByAnAdditionOnly) {
    FileKeychainStore store{file};
    EXPECT_EQ(store.copyMatching(query, {}).status, itemNotFound);
    EXPECT_EQ(store.update(query, {}), itemNotFound);
    EXPECT_EQ(store.remove(query), itemNotFound);
    EXPECT_TRUE(fs::is_empty(folder.path()));
    const auto openFiles = [] { return std::distance(fs::directory_iterator{"/dev/fd"}, {}); };
    const auto before = openFiles();
    EXPECT_EQ(FileKeychainStore{file}.add(item), success);
    EXPECT_EQ(openFiles(), before);
}

TEST_F(FileKeychain, OutlivesTheStoreAndSeesWhatBecameOfItsFile) {
    FileKeychainStore first{file};
    ASSERT_EQ(first.add(item), success);
    EXPECT_EQ(FileKeychainStore{file}.copyMatching(query, {}).status, success);
    fs::remove(file);
    EXPECT_EQ(first.copyMatching(query, {}).status, itemNotFound);
    EXPECT_EQ(first.add(item), success);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(FileKeychain, IsFoundBehindALinkedFolderButNotThroughALinkAtItsOwnPlace) {
    FileKeychainStore direct{file};
    ASSERT_EQ(direct.add(item), success);
    fs::create_directory_symlink(file.parent_path(), folder.path() / "link");
    EXPECT_EQ(FileKeychainStore{folder.path() / "link" / "keychain.sqlite"}.copyMatching(query, {}).status, success);

    const auto before = contentOf(file);
    for (const auto& target : {file, folder.path() / "nowhere"}) {
        SCOPED_TRACE(target);
        const auto link = folder.path() / "link.sqlite";
        fs::create_symlink(target, link);
        FileKeychainStore store{link};
        EXPECT_THAT(everyCall(store), ::testing::Each(invalidKeychain));
        fs::remove(link);
    }
    EXPECT_TRUE(contentOf(file) == before);
    EXPECT_FALSE(fs::exists(folder.path() / "nowhere"));
}

TEST_F(FileKeychain, RefusesWhatIsNoKeychainAndLeavesItAlone) {
    fs::create_directories(file.parent_path());
    FileKeychainStore store{file};
    ASSERT_EQ(store.add(item), success);
    const auto good = contentOf(file);
    auto laterVersion = good;
    laterVersion[63] = 3;  // the last byte of the user version
    fs::remove(file);
    runSql(file, "CREATE TABLE other (x); INSERT INTO other VALUES (1)");
    const auto foreign = contentOf(file);

    const struct {
        std::string name, content;
        KeychainStatus status = success;
        mode_t mode = 0644;
    } rows[] = {
        {"text", std::string(5000, 'x'), invalidKeychain},
        {"short text", "xy", invalidKeychain},
        {"foreign tables", foreign, invalidKeychain},
        {"later version", laterVersion, KeychainStatus::unknownFormat, 0600},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        writeFile(file, row.content);
        fs::permissions(file, fs::perms{0644});
        EXPECT_THAT(everyCall(store), ::testing::Each(row.status));
        EXPECT_TRUE(contentOf(file) == row.content);
        EXPECT_EQ(modeOf(file), row.mode);
    }
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_THAT(everyCall(store), ::testing::Each(invalidKeychain));
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_THAT(everyCall(store), ::testing::Each(invalidKeychain)) << "and does not wait for a writer";
}

TEST_F(FileKeychain, SetsADamagedFileAsideAndBeginsWithANewOne) {
    FileKeychainStore store{file};
    ASSERT_EQ(store.add(item), success);
    const auto good = contentOf(file);
    const auto withGap = [&](std::size_t from, std::size_t size) {
        auto content = good;
        return content.replace(from, size, std::string(size, '\xA5'));
    };
    auto noTable = good;
    noTable.replace(noTable.find("CREATE TABLE item"), 17, "CREATE TABLE else");
    const struct {
        std::string name, content;
    } rows[] = {
        {"cut in the first page", good.substr(0, 700)},
        {"cut after it", good.substr(0, 4096)},
        {"no header", withGap(0, 512)},
        {"only a header", withGap(100, good.size() - 100)},
        {"no items", withGap(4096, good.size() - 4096)},
        {"no table", noTable},
    };
    for (const auto& row : rows) {
        for (const bool byRemoval : {false, true}) {
            SCOPED_TRACE(row.name + (byRemoval ? ", removed" : ", added"));
            fs::remove_all(file.parent_path());
            fs::create_directories(file.parent_path());
            writeFile(file, row.content);
            writeFile(file.string() + "-journal", "no valid journal");
            EXPECT_EQ(store.copyMatching(query, {}).status, invalidKeychain);
            EXPECT_EQ(store.state().status, invalidKeychain);
            EXPECT_THAT(store.message(invalidKeychain), ::testing::Optional(::testing::HasSubstr("damaged")));
            EXPECT_TRUE(contentOf(file) == row.content) << "a look changes nothing";
            EXPECT_EQ(byRemoval ? store.remove(query) : store.add(item), byRemoval ? itemNotFound : success);
            EXPECT_EQ(store.copyMatching(query, {}).status, byRemoval ? itemNotFound : success);
            const auto state = store.state();
            EXPECT_EQ(state.status, success);
            EXPECT_THAT(state.damagedFile, ::testing::StartsWith(file.string() + ".damaged-"));
            EXPECT_TRUE(contentOf(state.damagedFile) == row.content);
            EXPECT_EQ(modeOf(state.damagedFile), 0600U);
        }
    }
}

TEST_F(FileKeychain, LosesNothingWhenProcessesFindTheSameDamage) {
    constexpr int processes = 4;
    fs::create_directories(file.parent_path());
    for (int round = 0; round < 20; ++round) {
        fs::remove_all(file.parent_path());
        ASSERT_EQ(FileKeychainStore{file}.add(item), success);
        fs::resize_file(file, 5000);
        std::list<ChildProcess> writers;
        for (int number = 0; number < processes; ++number) {
            writers.emplace_back([&] {
                ::_exit(FileKeychainStore{file}.add({"s", std::to_string(number), {}, "", {}, ""}) == success ? 0 : 1);
            });
        }
        for (auto& writer : writers) {
            EXPECT_EQ(writer.wait(), 0);
        }
        for (int number = 0; number < processes; ++number) {
            EXPECT_EQ(FileKeychainStore{file}.copyMatching({"s", std::to_string(number)}, {}).status, success);
        }
        EXPECT_EQ(std::distance(fs::directory_iterator{file.parent_path()}, {}), 2) << "one was set aside";
    }
}

TEST_F(FileKeychain, ReadsTheFirstLayoutAsItIsAndWritesThePresentOne) {
    fs::create_directories(file.parent_path());
    runSql(file,
           "CREATE TABLE item (id INTEGER PRIMARY KEY, service TEXT NOT NULL, account TEXT NOT NULL,"
           " label TEXT NOT NULL, comment TEXT NOT NULL, data BLOB, reference BLOB NOT NULL UNIQUE,"
           " UNIQUE (account, service)) STRICT; PRAGMA user_version = 1;"
           "INSERT INTO item VALUES (1, 's', 'a', 'label', 'comment', x'6F6C64', x'726566')");
    const auto first = contentOf(file);
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours{1};
    fs::last_write_time(file, time);
    FileKeychainStore store{file};
    const auto before = store.everything().items;
    ASSERT_EQ(before.size(), 1U);
    EXPECT_EQ(before.front().data, "old");
    EXPECT_EQ(before.front().accessibility, "always");
    EXPECT_TRUE(contentOf(file) == first);
    EXPECT_EQ(store.add({"t", "b", "new", "", {}, ""}), success);
    const auto after = store.everything().items;
    ASSERT_EQ(after.size(), 2U);
    EXPECT_EQ(after.front(), before.front()) << "its time, which was the file's, too";
    EXPECT_GT(after.back().written, before.front().written);
}

TEST_F(FileKeychain, OverwritesFormerSecrets) {
    FileKeychainStore store{file};
    for (const auto* const account : {"first", "second"}) {
        ASSERT_EQ(store.add({"s", account, std::string{"secret of "} + account, "", {}, ""}), success);
    }
    ASSERT_EQ(store.update({"s", "first"}, {.data = "short"}), success);
    ASSERT_EQ(store.remove({"s", "second"}), success);
    EXPECT_EQ(contentOf(file).find("secret of"), std::string::npos);
}

TEST_F(FileKeychain, SaysThatNoFolderCanBeMade) {
    writeFile(folder.path() / "made", "a file where the folder should be");
    FileKeychainStore store{file};
    EXPECT_THAT(everyCall(store), ::testing::Each(KeychainStatus::notAvailable));
    FileKeychainStore homeless{""};
    EXPECT_THAT(everyCall(homeless), ::testing::Each(KeychainStatus::notAvailable));
}

TEST_F(FileKeychain, SaysThatItMayNotWrite) {
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    const auto asUser = [&] { return !isRoot || ::setresuid(nobody, nobody, nobody) == 0; };
    constexpr auto denied = KeychainStatus::writePermission;
    FileKeychainStore store{file};
    ASSERT_EQ(store.add(item), success);
    for (auto place = file; isRoot && place != folder.path().parent_path(); place = place.parent_path()) {
        ASSERT_EQ(::chown(place.c_str(), nobody, nobody), 0);
    }

    fs::permissions(file.parent_path(), fs::perms{0500});
    EXPECT_EQ(everyCallInChild(asUser), (Statuses{success, denied, denied, denied})) << "read-only folder";
    EXPECT_EQ(state, denied);
    fs::permissions(file.parent_path(), fs::perms{0700});
    fs::permissions(file, fs::perms{0400});
    EXPECT_EQ(everyCallInChild(asUser), (Statuses{success, denied, denied, denied})) << "read-only file";
    EXPECT_EQ(state, denied);
    if (isRoot) {
        ASSERT_EQ(::chown(file.c_str(), 0, 0), 0);
        ASSERT_EQ(::chmod(file.c_str(), 0666), 0);
        EXPECT_EQ(everyCallInChild(asUser), (Statuses{denied, denied, denied, denied})) << "a file of another user";
    }
    fs::remove(file);
    fs::permissions(file.parent_path(), fs::perms{0500});
    EXPECT_EQ(everyCallInChild(asUser), (Statuses{itemNotFound, itemNotFound, denied, itemNotFound})) << "no file";
    EXPECT_EQ(state, denied);
    fs::permissions(file.parent_path(), fs::perms{0700});
}

TEST_F(FileKeychain, SaysThatNothingMoreFits) {
    FileKeychainStore store{file};
    ASSERT_EQ(store.add(item), success);
    const auto limited = [&] {
        // Twice the size: the journal of the smaller changes fits.
        const auto size = fs::file_size(file) * 2;
        const rlimit limit{size, size};
        return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
    };
    EXPECT_EQ(everyCallInChild(limited), (Statuses{success, success, KeychainStatus::diskFull, success}));
}

TEST_F(FileKeychain, SaysThatTheFileSystemIsFullOrReadOnly) {
    fs::create_directories(file.parent_path());
    const auto mounted = [&] {
        const int spaces = CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER);
        return ::unshare(spaces) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("tmpfs", file.parent_path().c_str(), "tmpfs", 0, "size=64k") == 0;
    };
    const auto full = everyCallInChild([&] { return mounted() && FileKeychainStore{file}.add(item) == success; });
    const auto readOnly = everyCallInChild([&] {
        return mounted() && FileKeychainStore{file}.add(item) == success &&
               ::mount(nullptr, file.parent_path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    });
    if (!full || !readOnly) {
        GTEST_SKIP() << "no file system can be mounted here";
    }
    EXPECT_EQ(full, (Statuses{success, success, KeychainStatus::diskFull, success}));
    constexpr auto denied = KeychainStatus::writePermission;
    EXPECT_EQ(readOnly, (Statuses{success, denied, denied, denied}));
    EXPECT_EQ(state, denied);
}

TEST_F(FileKeychain, TakesTheLastWriteForTheLastThoughTheClockGoesBack) {
    const ScopedProcessValues scope;
    FileKeychainStore store{file, std::chrono::seconds{1}};
    WallClock::setSource([] { return WallTime{std::chrono::seconds{2}}; });
    ASSERT_EQ(store.add(item), success);
    WallClock::setSource([] { return WallTime{std::chrono::seconds{1}}; });
    ASSERT_EQ(store.update(query, {.data = "new"}), success);
    runSql(file, "CREATE TEMP TABLE later (holds CHECK (holds)); INSERT INTO later SELECT written > 2000000 FROM item");
}

TEST_F(FileKeychain, GivesUpOnALockThatStays) {
    FileKeychainStore store{file, std::chrono::milliseconds{1}};
    sqlite3* opened = nullptr;
    ASSERT_EQ(store.add(item), success);
    ASSERT_EQ(sqlite3_open(file.c_str(), &opened), SQLITE_OK);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> other{opened, &sqlite3_close};
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(sqlite3_exec(opened, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
        int waits = 0;
        int refusals = 0;
        Logging::setSink([&](const auto& entry) {
            EXPECT_EQ(store.copyMatching({}, {}).status, KeychainStatus::notAvailable) << "and doesn't wait for itself";
            waits += entry.message.find("given up after 1 ms") == std::string::npos ? 0 : 1;
            refusals += entry.message.find("still locked") == std::string::npos ? 0 : 1;
        });
        EXPECT_THAT(everyCall(store), ::testing::Each(KeychainStatus::notAvailable));
        Logging::setSink({});
        EXPECT_EQ(waits, 1) << "a lock is waited for again once the file has been free";
        EXPECT_EQ(refusals, 3);
        EXPECT_THAT(store.message(KeychainStatus::notAvailable), ::testing::Optional(::testing::HasSubstr("locked")));
        ASSERT_EQ(sqlite3_exec(opened, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
        EXPECT_THAT(everyCall(store), ::testing::Each(success));
        ASSERT_EQ(store.add(item), success);
    }
}

}  // namespace
}  // namespace Tarnwick_API::Platform
