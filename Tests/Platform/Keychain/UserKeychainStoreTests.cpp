// Which store the user's choice falls on, and how what the file holds gets to the Secret Service.

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "NumberedItems.hpp"
#include "PrintKeychainStatus.hpp"
#include "PrivateKeyring.hpp"
#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
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
    std::atomic<int> failures = 0;
    std::atomic<bool> isEnough = false;
    std::thread migrating{[&] {
        while (!isEnough) {  // for a second each: as long as the file's lock is waited for
            EXPECT_EQ(store->copyMatching(query, all).status, KeychainStatus::notAvailable);
            ++failures;
        }
    }};
    for (int count = 0; count < 20; ++count) {
        EXPECT_EQ(store->state().status, success);
    }
    EXPECT_LT(failures, 3) << "waited for the other call";
    isEnough = true;
    migrating.join();

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
    const auto now = fs::file_time_type::clock::now();
    const struct {
        std::string name;
        std::function<void()> prepare;
        std::chrono::hours fileAge;
        std::string account;
    } rows[] = {
        {"the file's, of the same account",
         [&] {
             return void(inSecretService->add({"s", "file", "old", "", {}, ""}));
         },
         std::chrono::hours{-1}, "file"},
        {"the file's, of another account",
         [&] {
             return void(inSecretService->add({"s", "other", "old", "", {}, ""}));
         },
         std::chrono::hours{-1}, "file"},
        {"the Secret Service's",
         [&] {
             return void(inSecretService->add({"s", "other", "new", "", {}, ""}));
         },
         std::chrono::hours{1}, "other"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        static_cast<void>(inSecretService->remove(query));
        ASSERT_EQ(inFile.add({"s", "file", "data", "", {}, ""}), success);
        row.prepare();
        fs::last_write_time(file, now - row.fileAge);
        EXPECT_EQ(only(*fresh()).account, row.account);
        EXPECT_EQ(keyring.count("s"), 1);
        EXPECT_EQ(inFile.copyMatching({}, {}).status, KeychainStatus::itemNotFound);
    }
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
