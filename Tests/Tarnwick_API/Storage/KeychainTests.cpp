#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include "KeychainStoreKinds.hpp"
#include "RecordingKeychainStore.hpp"
#include "TemporaryFolder.hpp"

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::KeychainDictionary;
using Platform::KeychainStatus;
using ::testing::ElementsAreArray;
using ::testing::Ne;
using ::testing::Optional;

const std::string flagged = "requires user interaction";
const std::string noUtf8 = "caf\xE9";

/// What the token store promises, on every kind of keychain.
class EveryKeychain : public ::testing::TestWithParam<Platform::KeychainStoreKind> {
protected:
    void SetUp() override { Keychain::setStore(store); }

    TemporaryFolder folder{std::filesystem::temp_directory_path()};
    std::shared_ptr<Platform::KeychainStore> store = GetParam().make(folder.path());
    Platform::ScopedProcessValues scope;
};

TEST_P(EveryKeychain, HasNothingForAServiceWithoutItem) {
    Keychain::setPassword("other", "alice", "secret");
    EXPECT_EQ(Keychain::getPassword("service", "alice"), std::nullopt);
    EXPECT_EQ(Keychain::getPasswordReference("service", "alice"), std::nullopt);
    EXPECT_EQ(Keychain::getTokenData("service"), std::nullopt);
    EXPECT_EQ(Keychain::getLoginData("service"), std::nullopt);
    EXPECT_FALSE(Keychain::hasLoginData("service"));
    EXPECT_FALSE(Keychain::requiresUserInteraction("service"));
    Keychain::deleteItem("service");
    Keychain::resetRequiresUserInteraction("service");
    EXPECT_TRUE(Keychain::hasLoginData("other"));
}

TEST_P(EveryKeychain, GivesBackWhatWasSetAndKeepsTheReferenceThroughChanges) {
    Keychain::setPassword("service", "alice", "secret");
    EXPECT_EQ(Keychain::getLoginData("service"), (LoginData{"alice", "secret"}));
    EXPECT_TRUE(Keychain::hasLoginData("service"));
    EXPECT_EQ(Keychain::getPassword("service", "alice"), std::nullopt) << "bare bytes are no dictionary";
    const auto reference = Keychain::getPasswordReference("service", "alice");
    ASSERT_THAT(reference, Optional(Ne("")));
    EXPECT_EQ(Keychain::getTokenData("service"), (TokenData{"alice", *reference}));

    for (const LoginData& changed : {LoginData{"bob", "h\xC3\xA9"}, LoginData{"bob", ""}, LoginData{"wipe", "wipe"}}) {
        Keychain::setPassword("service", changed.username, changed.password);
        EXPECT_EQ(Keychain::getLoginData("service"), changed);
        EXPECT_EQ(Keychain::getTokenData("service"), (TokenData{changed.username, *reference}));
        EXPECT_EQ(Keychain::getPasswordReference("service", changed.username), reference);
        EXPECT_EQ(Keychain::getPasswordReference("service", "alice"), std::nullopt);
    }

    Keychain::deleteItem("service");
    EXPECT_FALSE(Keychain::hasLoginData("service"));
    Keychain::setPassword("service", "alice", "secret");
    EXPECT_THAT(Keychain::getPasswordReference("service", "alice"), Optional(Ne(*reference)));
}

TEST_P(EveryKeychain, FlagsEachSecretUntilReset) {
    for (const auto* const account : {"alice", "bob", "bob"}) {
        Keychain::setPassword("service", account, "secret");
        EXPECT_TRUE(Keychain::requiresUserInteraction("service"));
        Keychain::resetRequiresUserInteraction("service");
        EXPECT_FALSE(Keychain::requiresUserInteraction("service"));
        EXPECT_TRUE(Keychain::hasLoginData("service"));
    }
    ASSERT_EQ(store->update({"service", {}}, {.comment = "Requires user interaction"}), KeychainStatus::success);
    EXPECT_FALSE(Keychain::requiresUserInteraction("service")) << "compared letter by letter";
}

TEST_P(EveryKeychain, LeavesOutAPasswordThatIsNoUtf8) {
    Keychain::setPassword("service", "alice", noUtf8);
    EXPECT_FALSE(Keychain::hasLoginData("service"));
    EXPECT_TRUE(Keychain::getTokenData("service")) << "the item is there";
    ASSERT_EQ(store->update({"service", {}}, {.data = noUtf8}), KeychainStatus::success);
    EXPECT_FALSE(Keychain::hasLoginData("service")) << "written by somebody else";
    Keychain::setPassword("service", "alice", "secret");
    EXPECT_TRUE(Keychain::hasLoginData("service"));
}

TEST_P(EveryKeychain, ReplacesAnItemThatCannotBeChanged) {
    const auto add = [&](const std::string& account) { return store->add({"service", account, "old", "", {}, ""}); };
    ASSERT_EQ(add("alice"), KeychainStatus::success);
    ASSERT_EQ(add("bob"), KeychainStatus::success);
    ::testing::internal::CaptureStdout();
    Keychain::setPassword("service", "bob", "new");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Keychain error: The specified item already exists in the keychain.\n");
    EXPECT_EQ(Keychain::getLoginData("service"), (LoginData{"bob", "new"}));
    EXPECT_EQ(Keychain::getPasswordReference("service", "alice"), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Stores, EveryKeychain, ::testing::ValuesIn(Platform::everyKeychainStoreKind()),
                         [](const auto& info) { return info.param.name; });

/// Which calls of the platform's keychain the operations make.
class KeychainCalls : public ::testing::Test {
protected:
    void SetUp() override { reset(); }

    void reset() {
        store = std::make_shared<RecordingKeychainStore>();
        Keychain::setStore(store);
    }

    void addOldItem() {
        ASSERT_EQ(store->add({"s", "old", "old secret", "", {}, ""}), KeychainStatus::success);
        static_cast<void>(store->takeCalls());
    }

    std::shared_ptr<RecordingKeychainStore> store;
    Platform::ScopedProcessValues scope;
};

std::string addition(const std::string& data) {
    return "add service=s account=a" + data +
           " label=VPN App accessible=always access=VPN "
           "App[self;/usr/libexec/neagent;/System/Library/PreferencePanes/Network.prefPane/Contents/XPCServices/"
           "com.apple.preference.network.remoteservice.xpc;] comment=" +
           flagged;
}

TEST_F(KeychainCalls, AreMadeInOrderWithTheseArguments) {
    const auto set = [] { Keychain::setPassword("s", "a", "p"); };
    const auto resetFlag = [] { Keychain::resetRequiresUserInteraction("s"); };
    const auto fail = [&](const std::string& operation, KeychainStatus status) {
        return [this, operation, status] { store->failNext(operation, status); };
    };
    const std::string lookUp = "copyMatching service=s attributes";
    const std::string update = "update service=s account=old to account=a data=p comment=" + flagged;
    const std::string exists = "copyMatching service=s";
    const std::string clear = "update service=s to comment=";
    const auto denied = KeychainStatus::authFailed;
    const std::string report = "Keychain error: The user name or passphrase you entered is not correct.\n";
    const struct {
        std::string name;
        bool hasItem = false;
        std::function<void()> prepare;
        std::function<void()> act;
        std::vector<std::string> calls;
        std::string output = "";
    } rows[] = {
        {"set without item", false, {}, set, {lookUp, addition(" data=p")}},
        {"set with item", true, {}, set, {lookUp, update}},
        {"set empty", false, {}, [] { Keychain::setPassword("s", "a", ""); }, {lookUp, addition(" data=")}},
        {"set no UTF-8", false, {}, [] { Keychain::setPassword("s", "a", noUtf8); }, {lookUp, addition("")}},
        {"set no UTF-8 with item",
         true,
         {},
         [] { Keychain::setPassword("s", "a", noUtf8); },
         {lookUp, "update service=s account=old to account=a comment=" + flagged}},
        {"update fails",
         true,
         fail("update", denied),
         set,
         {lookUp, update, "remove service=s", addition(" data=p")},
         report},
        {"item goes before the update",
         true,
         fail("update", KeychainStatus::itemNotFound),
         set,
         {lookUp, update, addition(" data=p")},
         "Keychain error: The specified item could not be found in the keychain.\n"},
        {"update fails without message",
         true,
         [&] {
             store->failNext("update", denied);
             store->giveNoMessages();
         },
         set,
         {lookUp, update, "remove service=s", addition(" data=p")},
         "Keychain error: \n"},
        {"look-up fails", true, fail("copyMatching", denied), set, {lookUp, "remove service=s", addition(" data=p")}},
        {"item of no shape",
         true,
         [&] {
             store->answerNext({KeychainStatus::success, "bytes"});
         },
         set,
         {lookUp, "remove service=s", addition(" data=p")}},
        {"item without account",
         true,
         [&] {
             store->answerNext({KeychainStatus::success, KeychainDictionary{}});
         },
         set,
         {lookUp, "update service=s to account=a data=p comment=" + flagged}},
        {"nothing works",
         true,
         [&] {
             store->failNext("copyMatching", denied);
             store->failNext("remove", denied);
             store->failNext("add", denied);
         },
         set,
         {lookUp, "remove service=s", addition(" data=p")}},
        {"delete", true, {}, [] { Keychain::deleteItem("s"); }, {"remove service=s"}},
        {"delete fails", true, fail("remove", denied), [] { Keychain::deleteItem("s"); }, {"remove service=s"}},
        {"reset", true, {}, resetFlag, {exists, clear}},
        {"reset without item", false, {}, resetFlag, {exists}},
        {"reset fails to look", true, fail("copyMatching", denied), resetFlag, {exists}},
        {"reset fails", true, fail("update", denied), resetFlag, {exists, clear}, report},
        {"password",
         true,
         {},
         [] { static_cast<void>(Keychain::getPassword("s", "old")); },
         {"copyMatching service=s account=old limitOne data"}},
        {"reference",
         true,
         {},
         [] { static_cast<void>(Keychain::getPasswordReference("s", "old")); },
         {"copyMatching service=s account=old limitOne reference"}},
        {"token",
         true,
         {},
         [] { static_cast<void>(Keychain::getTokenData("s")); },
         {"copyMatching service=s limitOne attributes reference"}},
        {"login",
         true,
         {},
         [] { static_cast<void>(Keychain::hasLoginData("s")); },
         {"copyMatching service=s limitOne attributes data"}},
        {"flag",
         true,
         {},
         [] { static_cast<void>(Keychain::requiresUserInteraction("s")); },
         {"copyMatching service=s limitOne attributes"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        reset();
        Platform::Bundle::setMain({});
        if (row.hasItem) {
            addOldItem();
        }
        if (row.prepare) {
            row.prepare();
        }
        ::testing::internal::CaptureStdout();
        row.act();
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), row.output);
        EXPECT_THAT(store->takeCalls(), ElementsAreArray(row.calls));
    }
}

TEST_F(KeychainCalls, TakeAnAnswerOfAnUnexpectedShapeForAMissingItem) {
    KeychainDictionary whole;
    whole.account = "a";
    whole.data = "p";
    whole.persistentReference = "r";
    whole.comment = flagged;
    const auto without = [&](auto member) {
        auto dictionary = whole;
        dictionary.*member = std::nullopt;
        return dictionary;
    };
    const struct {
        std::string name;
        Platform::KeychainAnswer answer;
        bool password = false, reference = false, token = false, login = false, flag = false;
    } rows[] = {
        {"nothing", {}, false, false, false, false, false},
        {"bytes", {KeychainStatus::success, "bytes"}, false, true, false, false, false},
        {"dictionary", {KeychainStatus::success, whole}, true, false, true, true, true},
        {"failure with a value", {KeychainStatus::authFailed, whole}, false, false, false, false, false},
        {"failure with bytes", {KeychainStatus::authFailed, "bytes"}, false, false, false, false, false},
        {"no account", {{}, without(&KeychainDictionary::account)}, true, false, false, false, true},
        {"no data", {{}, without(&KeychainDictionary::data)}, false, false, true, false, true},
        {"no reference", {{}, without(&KeychainDictionary::persistentReference)}, true, false, false, true, true},
        {"no comment", {{}, without(&KeychainDictionary::comment)}, true, false, true, true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto answered = [&] { store->answerNext(row.answer); };
        answered();
        EXPECT_EQ(Keychain::getPassword("s", "a").has_value(), row.password);
        answered();
        EXPECT_EQ(Keychain::getPasswordReference("s", "a").has_value(), row.reference);
        answered();
        EXPECT_EQ(Keychain::getTokenData("s").has_value(), row.token);
        answered();
        EXPECT_EQ(Keychain::hasLoginData("s"), row.login);
        answered();
        EXPECT_EQ(Keychain::requiresUserInteraction("s"), row.flag);
    }
}

TEST(Keychain, NamesItsItemsAsTheApplicationIsCalledAtTheFirstUse) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process that has not used it yet
    const struct {
        Platform::Bundle bundle;
        std::string label;
    } rows[] = {
        {Platform::Bundle{{{"CFBundleName", "Name"}}}, "Name"},
        {Platform::Bundle{{{"CFBundleName", std::int64_t{7}}}}, "VPN App"},
        {Platform::Bundle{}, "VPN App"},
    };
    for (const auto& row : rows) {
        EXPECT_EXIT(
            {
                const auto store = std::make_shared<RecordingKeychainStore>();
                Keychain::setStore(store);
                Platform::Bundle::setMain(row.bundle);
                Keychain::setPassword("s", "a", "p");
                Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleName", "Later"}}});
                Keychain::setPassword("t", "a", "p");
                for (const auto& call : store->takeCalls()) {
                    std::cerr << call << ';';
                }
                std::exit(0);
            },
            ::testing::ExitedWithCode(0),
            "add service=s.* label=" + row.label + " .*access=" + row.label +
                "\\[.*add service=t.* label=" + row.label + " .*access=" + row.label + "\\[");
    }
}

TEST(Keychain, IsAPrivateFileWithoutASecretServiceUnlessAnotherStoreIsInstalled) {
    const TemporaryFolder folder;
    ASSERT_EQ(::setenv("XDG_DATA_HOME", folder.path().c_str(), 1), 0);
    Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleIdentifier", "org.example.App"}}});
    const auto memory = Platform::makeMemoryKeychainStore();
    Keychain::setStore(memory);
    EXPECT_EQ(Keychain::store(), memory);
    Keychain::setPassword("s", "a", "p");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));

    Keychain::setStore(nullptr);
    const auto place = folder.path() / "org.example.App";
    std::filesystem::create_directory(place);
    std::ofstream{place / "keychain.sqlite"} << "damaged beyond recognition";
    EXPECT_FALSE(Keychain::hasLoginData("s"));
    Keychain::setPassword("s", "a", "p");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{place}, {}), 2) << "nothing is deleted";
    EXPECT_TRUE(Keychain::hasLoginData("s"));
    Platform::Bundle::setMain({});
}

}  // namespace
}  // namespace Tarnwick_API
