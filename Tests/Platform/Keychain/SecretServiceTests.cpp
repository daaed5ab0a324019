// The Secret Service locked, hung, killed, missing, and written by several at once.

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "ChildProcess.hpp"
#include "NumberedItems.hpp"
#include "PrintKeychainStatus.hpp"
#include "PrivateKeyring.hpp"
#include "SecretServiceSteps.hpp"

#include <csignal>
#include <cstdlib>
#include <future>
#include <mutex>
#include <random>
#include <sstream>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace Tarnwick_API::Platform {
namespace {

using ::testing::Each;
using ::testing::HasSubstr;

constexpr auto success = KeychainStatus::success;
constexpr auto locked = KeychainStatus::interactionNotAllowed;
constexpr auto notAvailable = KeychainStatus::notAvailable;
constexpr auto itemNotFound = KeychainStatus::itemNotFound;
constexpr std::chrono::milliseconds timeout{60'000};
const KeychainQuery query{"s", {}};
const KeychainReturn all{true, true, true, true};

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto place = text.find(part); place != std::string::npos; place = text.find(part, place + 1)) {
        ++count;
    }
    return count;
}

class SecretService : public ::testing::Test {
protected:
    static std::vector<KeychainStatus> everyCall(KeychainStore& store) {
        return {store.copyMatching(query, all).status,
                store.copyMatching(query, {}).status,
                store.update(query, changesOf(2)),
                store.add(itemOf("s", 3)),
                store.remove(query),
                store.state().status};
    }

    static KeychainStatus unlock(KeychainStore& store) {
        const auto queue = BuiltInMainQueue::shared();
        std::optional<KeychainStatus> answer;
        store.unlock([&](KeychainStatus status) { answer = status; });
        queue->runUntil([&] { return answer.has_value(); });
        return *answer;
    }

    std::optional<unsigned long> number() const { return numberOf(store->copyMatching(query, all)); }

    /// Once the Secret Service is there again.
    std::optional<unsigned long> numberAtLast() const {
        auto answer = store->copyMatching(query, all);
        while (answer.status == notAvailable) {
            answer = store->copyMatching(query, all);
        }
        return numberOf(answer);
    }

    PrivateKeyring keyring;
    const std::shared_ptr<KeychainStore> store = makeSecretServiceKeychainStore(timeout);
    ScopedProcessValues scope;
};

TEST_F(SecretService, FailsAtOnceAndTellsWhyWhenThereIsNoOpenCollection) {
    const struct {
        std::string name;
        std::function<void()> prepare;
        KeychainStatus status = success;
        std::string message = "No error.";
    } rows[] = {
        {"bus without keyring", [] {}, notAvailable, "No keyring runs"},
        {"no collection", [&] { keyring.startKeyring({}); }, notAvailable, "no default collection"},
        {"open", [&] { keyring.startKeyring(); }, success},
        {"locked in between", [&] { keyring.lock(); }, locked, "Unlock it"},
        {"locked from the start", [&] { keyring.startKeyring("wrong"); }, locked, "Unlock it"},
        {"open again", [&] { keyring.startKeyring(); }, success},
        {"keyring gone", [&] { keyring.endKeyring(); }, notAvailable, "No keyring runs"},
        {"no bus", [&] { keyring.endBus(); }, notAvailable, "no bus"},
        {"everything back", [&] { keyring.startBus(), keyring.startKeyring(); }, success},
        {"no address", [] { ::unsetenv("DBUS_SESSION_BUS_ADDRESS"); }, notAvailable, "no bus"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        row.prepare();
        // The last row: a store that is connected stays so.
        const auto fresh = makeSecretServiceKeychainStore(timeout);
        for (const auto& each : {row.name == "no address" ? fresh : store, fresh}) {
            if (row.status == success) {
                static_cast<void>(each->remove(query));
                EXPECT_EQ(each->add(itemOf("s", 1)), success);
                EXPECT_THAT(everyCall(*each),
                            ::testing::ElementsAre(success, success, success, success, success, success));
                EXPECT_EQ(each->add(itemOf("s", 1)), success) << "an item for the next rows";
            } else {
                EXPECT_THAT(everyCall(*each), Each(row.status));
            }
            EXPECT_THAT(each->message(row.status), ::testing::Optional(HasSubstr(row.message)));
            EXPECT_EQ(unlock(*each), row.status);
            EXPECT_EQ(each->state().name, "Secret Service");
        }
    }
}

TEST_F(SecretService, TellsADismissedPromptFromOneThatCannotBeShown) {
    keyring.startKeyring();
    keyring.lock();
    EXPECT_EQ(unlock(*store), locked);
    ::setenv("WAYLAND_DISPLAY", "none", 1);
    EXPECT_EQ(unlock(*store), KeychainStatus::userCanceled);
    ::unsetenv("WAYLAND_DISPLAY");
    keyring.startKeyring();
    EXPECT_EQ(unlock(*store), success);
}

TEST_F(SecretService, GivesUpOnceWhenThereIsNoAnswer) {
    keyring.startKeyring();
    constexpr std::chrono::milliseconds little{400};
    const auto hurried = makeSecretServiceKeychainStore(little);
    ASSERT_EQ(store->add(itemOf("s", 1)), success);
    while (hurried->copyMatching(query, all).status == notAvailable) {
        // On a busy machine the connection takes longer than that.
    }
    std::ostringstream log;
    Logging::setSink([&](const auto& entry) { log << entry.message << '\n'; });

    keyring.freezeKeyring();
    const auto begin = std::chrono::steady_clock::now();
    const auto calls = everyCall(*hurried);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4 * little) << "one wait for a whole chain of six calls";
    EXPECT_THAT(calls, Each(notAvailable));
    EXPECT_THAT(hurried->message(notAvailable), ::testing::Optional(HasSubstr("does not answer")));
    EXPECT_EQ(occurrences(log.str(), "no answer within 400 ms"), 1U);
    EXPECT_EQ(occurrences(log.str(), "has not answered an earlier call yet"), calls.size() - 1);
    keyring.thawKeyring();
    EXPECT_EQ(number(), 1U) << "nothing was sent after the look-up";
    while (hurried->update(query, changesOf(2)) == notAvailable) {
    }
    EXPECT_EQ(number(), 2U);

    keyring.freezeKeyring();
    EXPECT_EQ(hurried->update(query, changesOf(3)), notAvailable);
    keyring.thawKeyring();
    while (hurried->update(query, {.comment = "4"}) == notAvailable) {
    }
    const auto found = std::get<KeychainDictionary>(store->copyMatching(query, all).value);
    EXPECT_EQ(found.data, secretOf(2)) << "an update that was given up in its search goes no further";
    EXPECT_THAT(log.str(), ::testing::Not(HasSubstr("2.2.")));

    keyring.freezeKeyring();
    {
        const auto dropped = makeSecretServiceKeychainStore(little);
        EXPECT_EQ(dropped->remove(query), notAvailable);
    }
    Logging::setSink({});
}

TEST_F(SecretService, ShowsPlainAttributesAndLeavesItemsOfOthersAlone) {
    keyring.startKeyring();
    const std::vector<std::string> lookUp{"secret-tool", "lookup", "service", "s", "account", "1"};
    const std::vector<std::string> store1{"secret-tool", "store", "--label=other", "service", "s", "account", "1"};
    ASSERT_EQ(store->add({"s", "1", "own", "label", {}, "comment"}), success);
    EXPECT_EQ(outputOf(lookUp), "own");
    EXPECT_EQ(store->remove(query), success);
    outputOf(store1, "foreign");
    EXPECT_THAT(everyCall(*store),
                ::testing::ElementsAre(itemNotFound, itemNotFound, itemNotFound, success, success, success));
    EXPECT_EQ(outputOf(lookUp), "foreign");
}

TEST_F(SecretService, RenamesItemsOfTheFormerSchemaAsSoonAsItCan) {
    const auto former = [&] { return keyring.count("Platform.GenericPassword", "xdg:schema"); };
    const auto keep = [](const std::string& account, const std::string& created, const std::string& revision) {
        outputOf({"secret-tool", "store", "--label=label", "xdg:schema", "Platform.GenericPassword", "service", "s",
                  "account", account, "comment", account, "ref", "ref" + account, "created", created, "revision",
                  revision, "hasData", "yes"},
                 secretOf(std::stoul(account)));
    };
    keyring.startKeyring();
    keep("2", "20", "1");
    keep("1", "10", "3");
    keep("3", "5", "0");  // a draft
    ASSERT_EQ(former(), 3);
    keyring.lock();
    EXPECT_THAT(everyCall(*store), Each(locked));

    std::signal(SIGXFSZ, SIG_IGN);  // inherited
    keyring.startKeyring();
    const auto process = keyring.keyringProcess();
    rlimit usual{};
    ASSERT_EQ(::prlimit(process, RLIMIT_FSIZE, nullptr, &usual), 0);
    const rlimit nothing{0, usual.rlim_max};
    ASSERT_EQ(::prlimit(process, RLIMIT_FSIZE, &nothing, nullptr), 0);
    EXPECT_EQ(number(), 1U) << "found, though nothing can be written";
    EXPECT_EQ(former(), 3);
    ASSERT_EQ(::prlimit(process, RLIMIT_FSIZE, &usual, nullptr), 0);

    EXPECT_EQ(number(), 1U);
    EXPECT_EQ(former(), 0);
    const auto found = std::get<KeychainDictionary>(store->copyMatching(query, all).value);
    EXPECT_EQ(found.label, "label");
    EXPECT_EQ(found.persistentReference, "ref1");
    EXPECT_EQ(keyring.count("s"), 2) << "the draft is gone";
    const auto another = makeSecretServiceKeychainStore(timeout);
    EXPECT_EQ(numberOf(another->copyMatching({"s", "2"}, all)), 2U);
    EXPECT_EQ(another->remove(query), success);
    EXPECT_EQ(makeSecretServiceKeychainStore(timeout)->copyMatching(query, all).status, itemNotFound);
}

TEST_F(SecretService, LeavesTheOldOrTheNewItemWheneverTheClientIsKilled) {
    keyring.startKeyring();
    ASSERT_EQ(store->add(itemOf("s", 0)), success);
    const auto reference = std::get<Bytes>(store->copyMatching(query, {.persistentReference = true}).value);
    std::mt19937 random{static_cast<unsigned>(::getpid())};
    std::uniform_int_distribution<int> lifetimes{1, 30'000};
    unsigned long before = 0;
    int interrupted = 0;
    for (int round = 0; round < 100; ++round) {
        Program writer{{KEYRING_WRITER, "until-killed", std::to_string(lifetimes(random))}};
        std::istringstream lines{writer.readAll()};
        ASSERT_EQ(writer.wait(), SIGKILL);
        for (unsigned long line = 0; lines >> line;) {
            before = line;
        }
        interrupted += keyring.count("s") > 1 ? 1 : 0;
        const auto found = number();
        ASSERT_TRUE(found == before || found == before + 1) << before;
        before = *found;
        ASSERT_EQ(std::get<Bytes>(store->copyMatching(query, {.persistentReference = true}).value), reference);
    }
    EXPECT_GT(interrupted, 0);
    RecordProperty("interrupted", interrupted);
    EXPECT_EQ(store->update(query, changesOf(7)), success);
    EXPECT_EQ(keyring.count("s"), 1) << "the next write has tidied up";
}

TEST_F(SecretService, LeavesTheOldOrTheNewItemWheneverTheServiceIsKilled) {
    keyring.startKeyring();
    ASSERT_EQ(store->add(itemOf("s", 0)), success);
    std::mt19937 random{static_cast<unsigned>(::getpid())};
    std::uniform_int_distribution<int> lifetimes{1, 30'000};
    unsigned long last = 0;
    for (int round = 0; round < 30; ++round) {
        SCOPED_TRACE(round);
        ChildProcess killer{[process = keyring.keyringProcess(), lifetime = lifetimes(random)] {
            ::usleep(static_cast<unsigned>(lifetime));
            ::kill(process, SIGKILL);
        }};
        auto status = success;
        while ((status = store->update(query, changesOf(last + 1))) == success) {
            ++last;
        }
        EXPECT_EQ(status, notAvailable);
        static_cast<void>(killer.wait());
        keyring.startKeyring();
        const auto found = numberAtLast();
        ASSERT_TRUE(found == last || found == last + 1) << last;
        last = *found;
    }
}

TEST_F(SecretService, ShowsAWholeItemWhileAnotherProcessWrites) {
    keyring.startKeyring();
    ASSERT_EQ(store->add(itemOf("s", 0)), success);
    const Program writer{{KEYRING_WRITER, "until-killed", "60000000"}};
    for (std::string line = writer.readLine(); line != "50"; line = writer.readLine()) {
        EXPECT_TRUE(number()) << line;
    }
}

TEST_F(SecretService, LeavesNothingWhenSeveralRemoveAtOnce) {
    keyring.startKeyring();
    const auto other = makeSecretServiceKeychainStore(timeout);
    const auto removeAndLook = [](KeychainStore& each) {
        EXPECT_THAT(each.remove(query), ::testing::AnyOf(success, itemNotFound));
        EXPECT_EQ(each.copyMatching(query, {}).status, itemNotFound);
    };
    for (int round = 0; round < 2; ++round) {
        for (unsigned long item = 0; item < 15; ++item) {
            ASSERT_EQ(store->add(itemOf("s", item)), success);
        }
        std::thread removing{[&] { removeAndLook(*other); }};
        removeAndLook(*store);
        removing.join();
    }
}

TEST_F(SecretService, BringsNothingBackThatIsChangedWhileItIsRemoved) {
    keyring.startKeyring();
    const auto other = makeSecretServiceKeychainStore(timeout);
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(store->add(itemOf("s", 0)), success);
        std::promise<void> hasBegun;
        std::thread changing{[&] {
            auto status = other->update(query, changesOf(1));
            hasBegun.set_value();
            for (unsigned long number = 2; status == success && number < 50; ++number) {
                status = other->update(query, changesOf(number));
            }
            EXPECT_EQ(status, itemNotFound);
        }};
        hasBegun.get_future().wait();
        EXPECT_EQ(store->remove(query), success);
        changing.join();
        ASSERT_EQ(keyring.count("s"), 0) << round;
    }
}

// What else happens comes exactly between two steps of a call here, and by chance in the tests above.
TEST_F(SecretService, TellsWhatHasBecomeOfTheKeyringBetweenTwoSteps) {
    using enum SecretServiceStep;
    keyring.startKeyring();
    const auto other = makeSecretServiceKeychainStore(timeout);
    const struct {
        const char* what;
        bool hasItem;
        SecretServiceStep before;
        std::function<void()> happens;
        std::function<KeychainStatus()> call;
        KeychainStatus status;
        int left;
    } rows[] = {
        {"an item is replaced while it is removed", true, erase,
         [&] { EXPECT_EQ(other->update(query, changesOf(1)), success); }, [&] { return store->remove(query); }, success,
         0},
        {"an item is removed while it is changed", true, create, [&] { EXPECT_EQ(other->remove(query), success); },
         [&] { return store->update(query, changesOf(1)); }, itemNotFound, 0},
        {"another is added before the older one", false, create,
         [&] { EXPECT_EQ(other->add(itemOf("s", 0)), success); }, [&] { return store->add(itemOf("s", 0)); }, success,
         1},
        {"the keyring goes when an item has been added", false, create,
         [&] { beforeNext(search, [&] { keyring.endKeyring(); }); }, [&] { return store->add(itemOf("s", 0)); },
         success, 1},
        {"the keyring is locked", false, search, [&] { keyring.lock(); },
         [&] { return store->copyMatching(query, {}).status; }, locked, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        static_cast<void>(other->remove(query));
        if (row.hasItem) {
            ASSERT_EQ(other->add(itemOf("s", 0)), success);
        }
        beforeNext(row.before, row.happens);
        EXPECT_EQ(row.call(), row.status);
        keyring.startKeyring();
        EXPECT_EQ(keyring.count("s"), row.left);
    }
}

TEST_F(SecretService, HasOneWholeItemAfterSeveralWrote) {
    keyring.startKeyring();
    {
        Program first{{KEYRING_WRITER, "compete", "1000", "60"}};
        Program second{{KEYRING_WRITER, "compete", "2000", "60"}};
        EXPECT_EQ(first.wait(), 0);
        EXPECT_EQ(second.wait(), 0);
    }
    EXPECT_TRUE(number() || store->copyMatching(query, {}).status == itemNotFound);
    static_cast<void>(store->add(itemOf("s", 0)));
    EXPECT_EQ(store->update(query, changesOf(1)), success);
    EXPECT_EQ(number(), 1U);
    EXPECT_EQ(store->remove(query), success);
    EXPECT_EQ(keyring.count("s"), 0);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
