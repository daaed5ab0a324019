// Which store the user's choice falls on, and how what the file holds gets to the Secret Service.

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "NumberedItems.hpp"
#include "PrintKeychainStatus.hpp"
#include "PrivateKeyring.hpp"
#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {
namespace {

namespace fs = std::filesystem;

using ::testing::HasSubstr;

constexpr auto success = KeychainStatus::success;
constexpr std::chrono::milliseconds timeout{60'000};
const KeychainQuery query{"s", {}};
const KeychainReturn all{true, true, true, true};

class UserKeychainStore : public ::testing::Test {
protected:
    UserKeychainStore() {
        Logging::setSink([this](const auto& entry) { log << entry.message << '\n'; });
    }

    [[nodiscard]] std::shared_ptr<KeychainStore> fresh(std::chrono::milliseconds wait = timeout) const {
        return makeUserKeychainStore(file, wait);
    }

    [[nodiscard]] static KeychainDictionary only(KeychainStore& store, const KeychainQuery& which = query) {
        auto answer = store.copyMatching(which, all);
        EXPECT_EQ(answer.status, success);
        return answer.status == success ? std::get<KeychainDictionary>(std::move(answer.value)) : KeychainDictionary{};
    }

    PrivateKeyring keyring;
    const std::string file = keyring.folder() / "keychain.sqlite";
    FileKeychainStore inFile{file};
    const std::shared_ptr<KeychainStore> inSecretService = makeSecretServiceKeychainStore(timeout);
    std::ostringstream log;
    ScopedProcessValues scope;
};

TEST_F(UserKeychainStore, IsTheSecretServiceWhereThereIsOneAndTheFileElsewhere) {
    const struct {
        std::string name;
        std::function<void()> prepare;
        std::string chosen, reason;
        KeychainStatus added = success;
    } rows[] = {
        {"nothing on the bus", [] {}, "private file", "no Secret Service"},
        {"no collection", [&] { keyring.startKeyring({}); }, "private file", "no default collection"},
        {"open", [&] { keyring.startKeyring(); }, "Secret Service", "/collection/login"},
        {"locked", [&] { keyring.lock(); }, "Secret Service", "/collection/login",
         KeychainStatus::interactionNotAllowed},
        {"started by the bus",
         [&] {
             keyring.endKeyring();
             keyring.letTheBusStart("/usr/bin/gnome-keyring-daemon --foreground --components=secrets");
             keyring.endBus(), keyring.startBus();
         },
         "Secret Service", "/collection/login", KeychainStatus::interactionNotAllowed},
        {"can't be started",
         [&] {
             keyring.letTheBusStart("/nowhere");
             keyring.endBus(), keyring.startBus();
         },
         "private file", "no Secret Service"},
        {"no bus", [&] { keyring.endBus(); }, "private file", "no session bus"},
        {"a bus that GLib would have to start", [] { ::setenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:", 1); },
         "private file", "no session bus"},
        {"no folder with a bus", [] { ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null/bus", 1); },
         "private file", "no session bus"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        row.prepare();
        log.str({});
        const auto store = fresh();
        EXPECT_EQ(store->add(itemOf(row.name, 1)), row.added);
        EXPECT_EQ(store->state().name, row.chosen);
        EXPECT_EQ(store->state().status, row.added);
        EXPECT_THAT(log.str(), HasSubstr(row.reason));
        EXPECT_EQ(row.chosen == "private file", inFile.copyMatching({row.name, {}}, {}).status == success);
    }
}

TEST_F(UserKeychainStore, IsTheFileOnTheBusOfAnotherUser) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    keyring.startKeyring();
    for (const auto* const place : {"", "session"}) {
        ASSERT_EQ(::chmod((keyring.folder() / place).c_str(), 0777), 0);
    }
    const auto store = fresh();
    ASSERT_EQ(::seteuid(65534), 0);
    EXPECT_EQ(store->add(itemOf("s", 1)), success);
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_THAT(log.str(), HasSubstr("no session bus of this user"));
    EXPECT_EQ(inFile.copyMatching(query, {}).status, success);
}

TEST_F(UserKeychainStore, NeverTakesTheFileWhileTheSecretServiceDoesNotAnswer) {
    keyring.startKeyring();
    keyring.freezeKeyring();
    const auto store = fresh(std::chrono::milliseconds{50});
    EXPECT_EQ(store->add(itemOf("s", 1)), KeychainStatus::notAvailable);
    EXPECT_EQ(store->state().status, KeychainStatus::notAvailable);
    EXPECT_FALSE(fs::exists(file));
    keyring.thawKeyring();
    while (store->add(itemOf("s", 1)) == KeychainStatus::notAvailable) {
    }
    EXPECT_EQ(store->state().name, "Secret Service");
    EXPECT_EQ(numberOf(inSecretService->copyMatching(query, all)), 1U);
}

TEST_F(UserKeychainStore, MigratesWhatTheFileHoldsOnceTheSecretServiceIsUnlocked) {
    ASSERT_EQ(inFile.add(itemOf("s", 1)), success);
    ASSERT_EQ(inFile.add({"t", "none", {}, "", {}, ""}), success);
    const auto before = only(inFile);
    keyring.startKeyring();
    keyring.lock();
    const auto store = fresh();
    EXPECT_EQ(store->copyMatching(query, all).status, KeychainStatus::interactionNotAllowed);
    EXPECT_EQ(numberOf(inFile.copyMatching(query, all)), 1U);
    keyring.startKeyring();
    EXPECT_EQ(numberOf(store->copyMatching(query, all)), 1U);
    EXPECT_EQ(only(*inSecretService).persistentReference, before.persistentReference);
    EXPECT_EQ(only(*inSecretService).label, before.label);
    EXPECT_EQ(only(*inSecretService, {"t", {}}).data, std::nullopt);
    EXPECT_EQ(inFile.copyMatching({}, {}).status, KeychainStatus::itemNotFound);
    EXPECT_THAT(log.str(), HasSubstr("moved"));
}

TEST_F(UserKeychainStore, AnswersOthersWhileOneCallMigrates) {
    keyring.startKeyring();
    ASSERT_EQ(inFile.add(itemOf("s", 1)), success);
    const auto store = fresh();
    sqlite3* opened = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &opened), SQLITE_OK);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> other{opened, &sqlite3_close};
    ASSERT_EQ(sqlite3_exec(opened, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    std::atomic<bool> hasEnded = false;
    std::thread migrating{[&] {
        // For as long as the file's lock is waited for, a second.
        EXPECT_EQ(store->copyMatching(query, all).status, KeychainStatus::notAvailable);
        hasEnded = true;
    }};
    for (int count = 0; count < 20; ++count) {
        EXPECT_EQ(store->state().status, success);
    }
    EXPECT_FALSE(hasEnded) << "waited for the other call";
    migrating.join();
    EXPECT_THAT(store->message(KeychainStatus::notAvailable), ::testing::Optional(HasSubstr("file locked")));

    ASSERT_EQ(sqlite3_exec(opened, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    std::vector<std::thread> threads(4);
    for (auto& thread : threads) {
        thread = std::thread{[&] { EXPECT_EQ(numberOf(store->copyMatching(query, all)), 1U); }};
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST_F(UserKeychainStore, KeepsTheItemThatWasWrittenLast) {
    keyring.startKeyring();
    auto now = WallClock::now();
    WallClock::setSource([&] { return now += std::chrono::microseconds{1}; });
    const auto write = [](KeychainStore& store, const std::string& account, const std::string& service = "s") {
        EXPECT_EQ(store.add({service, account, "data", "", {}, ""}), success);
    };
    const struct {
        std::string name;
        std::function<void()> prepare;
        std::string account;
    } rows[] = {
        {"the file's, of the same account", [&] { write(*inSecretService, "file"), write(inFile, "file"); }, "file"},
        {"the file's, of another account", [&] { write(*inSecretService, "other"), write(inFile, "file"); }, "file"},
        {"the Secret Service's", [&] { write(inFile, "file"), write(*inSecretService, "other"); }, "other"},
        {"the file's, changed",
         [&] {
             write(inFile, "old"), write(*inSecretService, "other");
             EXPECT_EQ(inFile.update(query, {.account = "file"}), success);
         },
         "file"},
        {"the Secret Service's, changed",
         [&] {
             write(*inSecretService, "old"), write(inFile, "file");
             EXPECT_EQ(inSecretService->update(query, {.account = "other"}), success);
         },
         "other"},
        {"the Secret Service's, with the flag of the file's reset",
         [&] {
             write(inFile, "file"), write(*inSecretService, "other");
             EXPECT_EQ(inFile.update(query, {.comment = ""}), success);
         },
         "other"},
        {"the Secret Service's, with another of the file's deleted",
         [&] {
             write(inFile, "t", "t"), write(inFile, "file"), write(*inSecretService, "other");
             EXPECT_EQ(inFile.remove({"t", {}}), success);
         },
         "other"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        static_cast<void>(inSecretService->remove(query));
        row.prepare();
        EXPECT_EQ(only(*fresh()).account, row.account);
        EXPECT_EQ(keyring.count("s"), 1);
        EXPECT_EQ(inFile.copyMatching({}, {}).status, KeychainStatus::itemNotFound);
    }
}

TEST_F(UserKeychainStore, FindsInTheSecretServiceWhatAnotherProcessHasMovedThere) {
    const auto onFile = fresh();
    ASSERT_EQ(onFile->add(itemOf("s", 1)), success);
    keyring.startKeyring();
    EXPECT_EQ(numberOf(onFile->copyMatching(query, all)), 1U);
    EXPECT_EQ(onFile->state().name, "private file") << "for as long as the items are there";
    EXPECT_EQ(numberOf(fresh()->copyMatching(query, all)), 1U);
    EXPECT_EQ(onFile->update(query, changesOf(2)), success);
    EXPECT_EQ(onFile->state().name, "Secret Service");
    EXPECT_EQ(numberOf(inSecretService->copyMatching(query, all)), 2U);
}

TEST_F(UserKeychainStore, LeavesInTheFileWhatChangesWhileItIsMoved) {
    const KeychainChanges rows[] = {{.account = "2"}, {.data = "new"}, {.comment = "new"}};
    auto unchanged = itemOf("t", 2);
    unchanged.data.reset();
    for (const auto& changes : rows) {
        static_cast<void>(inFile.remove({}));
        ASSERT_EQ(inFile.add(itemOf("s", 1)), success);
        ASSERT_EQ(inFile.add(unchanged), success);
        const auto moved = inFile.everything().items;
        ASSERT_EQ(inFile.update(query, changes), success);
        EXPECT_EQ(inFile.removeMoved(moved), success);
        EXPECT_EQ(inFile.copyMatching(query, {}).status, success);
        EXPECT_EQ(inFile.copyMatching({"t", {}}, {}).status, KeychainStatus::itemNotFound);
    }
}

TEST_F(UserKeychainStore, BringsNothingBackFromAFileThatCannotBeEmptied) {
    keyring.startKeyring();
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    const auto limitFiles = [&](rlim_t size) {
        const rlimit limit{size, usual.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    };
    const auto statusOf = [&] {
        limitFiles(0);
        const auto status = fresh()->copyMatching(query, all).status;
        limitFiles(usual.rlim_cur);
        return status;
    };
    ASSERT_EQ(inFile.add(itemOf("s", 1)), success);
    EXPECT_EQ(statusOf(), success);
    EXPECT_EQ(inFile.update(query, changesOf(2)), success);
    EXPECT_EQ(statusOf(), success);
    EXPECT_EQ(numberOf(inSecretService->copyMatching(query, all)), 2U) << "written after the move";

    EXPECT_EQ(inSecretService->remove(query), success);
    EXPECT_EQ(statusOf(), KeychainStatus::itemNotFound);
    EXPECT_EQ(inFile.copyMatching(query, {}).status, success);
    EXPECT_EQ(fresh()->copyMatching(query, all).status, KeychainStatus::itemNotFound);
    EXPECT_EQ(inFile.copyMatching({}, {}).status, KeychainStatus::itemNotFound) << "emptied at last";
    EXPECT_EQ(keyring.count("example.tarnwick.MovedItem", "xdg:schema"), 0);
}

TEST_F(UserKeychainStore, LosesAndDoublesNothingWhenKilledInTheMigration) {
    keyring.startKeyring();
    bool survived = false;
    int inBoth = 0;
    for (int lifetime = 1'000; !survived; lifetime += lifetime / 10) {
        SCOPED_TRACE(lifetime);
        static_cast<void>(inSecretService->remove(query));
        static_cast<void>(inSecretService->remove({"t", {}}));
        ASSERT_EQ(inFile.remove({}) == success || lifetime == 1'000, true);
        ASSERT_EQ(inFile.add(itemOf("s", 1)), success);
        ASSERT_EQ(inFile.add(itemOf("t", 2)), success);
        const auto reference = only(inFile).persistentReference;
        Program migrator{{KEYRING_WRITER, "migrate", file, std::to_string(lifetime)}};
        survived = migrator.wait() == 0;
        inBoth += inFile.copyMatching(query, {}).status == success && keyring.count("s") == 1 ? 1 : 0;
        const auto store = fresh();
        EXPECT_EQ(numberOf(store->copyMatching(query, all)), 1U);
        EXPECT_EQ(numberOf(store->copyMatching({"t", {}}, all)), 2U);
        EXPECT_EQ(only(*store).persistentReference, reference);
        EXPECT_EQ(keyring.count("s"), 1);
        EXPECT_EQ(inFile.copyMatching({}, {}).status, KeychainStatus::itemNotFound);
        ASSERT_EQ(inFile.add(itemOf("rest", 0)), success);
    }
    EXPECT_GT(inBoth, 0) << "never killed between the two";
}

}  // namespace
}  // namespace Tarnwick_API::Platform
