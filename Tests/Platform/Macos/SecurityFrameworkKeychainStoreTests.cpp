// The translation itself: what goes out to the framework, and what becomes of its answers.

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include "AppleFrameworksDouble.hpp"
#include "PrintKeychainStatus.hpp"

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace AppleFrameworksDouble;
using Strings = std::vector<std::string>;

class SecurityFrameworkKeychain : public ::testing::Test {
protected:
    void TearDown() override { expectNothingLeft(); }

    const std::shared_ptr<KeychainStore> store = makeSecurityFrameworkKeychainStore();
};

TEST_F(SecurityFrameworkKeychain, PassesOnExactlyWhatItIsGiven) {
    const KeychainQuery query{"s", "a"};
    const auto lookUp = [&](const KeychainReturn& wanted) {
        return [&, wanted] { return store->copyMatching(query, wanted).status; };
    };
    const auto update = [&](const KeychainChanges& changes) {
        return [&, changes] { return store->update(query, changes); };
    };
    const auto remove = [&] { return store->remove(query); };
    const std::string item = " {kSecClass=kSecClassGenericPassword kSecAttrService='s' kSecAttrAccount='a'";
    const struct {
        std::function<KeychainStatus()> act;
        OSStatus status = errSecSuccess;
        std::string call;
    } rows[] = {
        {[&] { return store->copyMatching({}, {}).status; }, 0,
         "SecItemCopyMatching {kSecClass=kSecClassGenericPassword}"},
        {lookUp({}), -25300, "SecItemCopyMatching" + item + "}"},
        {lookUp({.limitOne = true}), 0, "SecItemCopyMatching" + item + " kSecMatchLimit=kSecMatchLimitOne}"},
        {lookUp({.attributes = true}), -25244, "SecItemCopyMatching" + item + " kSecReturnAttributes=true}"},
        {lookUp({.data = true}), -128, "SecItemCopyMatching" + item + " kSecReturnData=true}"},
        {lookUp({.persistentReference = true}), -50, "SecItemCopyMatching" + item + " kSecReturnPersistentRef=true}"},
        {update({}), -61, "SecItemUpdate" + item + "} {}"},
        {update({"b", "p", "c"}), 0,
         "SecItemUpdate" + item + "} {kSecAttrAccount='b' kSecValueData=<p> kSecAttrComment='c'}"},
        {remove, -25299, "SecItemDelete" + item + "}"},
    };
    for (const auto& row : rows) {
        answer({Answer{row.status}});
        EXPECT_EQ(static_cast<OSStatus>(row.act()), row.status) << row.call;
        EXPECT_EQ(takeCalls(), Strings{row.call});
    }
}

TEST_F(SecurityFrameworkKeychain, AddsAnItemWithAListOfWhoMayReadIt) {
    const auto object = [](const char* name) { return Answer{errSecSuccess, made({.text = name})}; };
    const Answer failure{errSecParam};
    const struct {
        std::optional<Bytes> data;
        std::vector<Answer> answers;
        Strings lists;
        std::string dataMember, accessMember;
    } rows[] = {
        {"p",
         {object("1"), object("2"), object("self"), object("access"), {-25299}},
         {"self 1 2"},
         " kSecValueData=<p>",
         " kSecAttrAccess=access"},
        {{},
         {object("1"), failure, object("self"), object("access"), {}},
         {"self 1 missing"},
         "",
         " kSecAttrAccess=access"},
        {{},
         {failure, object("2"), object("self"), failure, object("access"), {}},
         {"self missing 2", "self 2"},
         "",
         " kSecAttrAccess=access"},
        {{}, {failure, failure, object("self"), failure, failure, {}}, {"self missing missing", "self"}, "", ""},
        {{}, {object("1"), object("2"), object("self"), failure, {}}, {"self 1 2"}, "", ""},
        {"", {object("1"), object("2"), failure, failure, {}}, {"missing 1 2"}, " kSecValueData=<>", ""},
    };
    for (const auto& row : rows) {
        answer(row.answers);
        const auto status = store->add({"s", "a", row.data, "l", {"d", {{}, "/1", "/2"}}, "c"});
        EXPECT_EQ(static_cast<OSStatus>(status), row.answers.back().status);
        Strings calls{"SecTrustedApplicationCreateFromPath /1", "SecTrustedApplicationCreateFromPath /2",
                      "SecTrustedApplicationCreateFromPath -"};
        for (const auto& list : row.lists) {
            calls.push_back("SecAccessCreate 'd' [" + list + "]");
        }
        calls.push_back("SecItemAdd {kSecClass=kSecClassGenericPassword kSecAttrService='s' kSecAttrAccount='a'" +
                        row.dataMember + " kSecAttrLabel='l' kSecAttrAccessible=kSecAttrAccessibleAlways" +
                        row.accessMember + " kSecAttrComment='c'}");
        EXPECT_EQ(takeCalls(), calls);
    }
}

TEST_F(SecurityFrameworkKeychain, SaysWhoIsNotLetAtAnItemAndWhy) {
    const ScopedProcessValues scope;
    Strings lines;
    Logging::setSink([&](const Logging::Entry& entry) { lines.emplace_back(entry.message); });
    const Answer failure{-67068};
    const auto words = [] { return Answer{errSecSuccess, text("Words.")}; };
    answer({failure, words(), {errSecSuccess, made({})}, failure, failure, words(), {}});
    EXPECT_EQ(store->add({"s", "a", {}, "l", {"d", {{}, "/1"}}, "c"}), KeychainStatus::success);
    EXPECT_EQ(takeCalls().size(), 7U);
    EXPECT_EQ(lines, (Strings{"Keychain: /1 can't be let at the item: Words. (-67068)",
                              "Keychain: the item has no access list, and only this application can read it without a "
                              "prompt: Words. (-67068)"}));
}

// The file keychain finds an item by service and account, and makes its reference of them.
TEST_F(SecurityFrameworkKeychain, GivesTheReferenceThatAnItemHasAfterAChangeOfItsAccount) {
    const ScopedProcessValues scope;
    Keychain::setStore(store);
    const auto item = [](const char* account) {
        return Answer{errSecSuccess,
                      dictionary({kSecAttrAccount, text(account), kSecValuePersistentRef, data(account)})};
    };
    const std::string query = "{kSecClass=kSecClassGenericPassword kSecAttrService='s'";
    answer({item("old"), item("old"), {}, item("new")});
    EXPECT_EQ(Keychain::getTokenData("s")->passwordReference, "old");
    EXPECT_EQ(Keychain::keepPassword("s", "new", "p"), KeychainStatus::success);
    EXPECT_EQ(Keychain::getTokenData("s")->passwordReference, "new");
    EXPECT_EQ(takeCalls().at(2), "SecItemUpdate " + query +
                                     " kSecAttrAccount='old'} {kSecAttrAccount='new' kSecValueData=<p> "
                                     "kSecAttrComment='requires user interaction'}");
    // The new account's own item stands in the way: the token is kept all the same.
    testing::internal::CaptureStdout();
    answer({item("old"), {errSecDuplicateItem}, {errSecSuccess, text("Words.")}, {}, {}, {}, {}, {}, {}});
    EXPECT_EQ(Keychain::keepPassword("s", "new", "p"), KeychainStatus::success);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Keychain error: Words.\n");
    EXPECT_EQ(takeCalls().at(3), "SecItemDelete " + query + "}");
}

TEST_F(SecurityFrameworkKeychain, AsksNothingWithTextThatItWouldReadOtherwise) {
    for (const auto& odd : {std::string{"s\0", 2}, std::string{"\xFF"}}) {
        EXPECT_EQ(store->copyMatching({odd, {}}, {}).status, KeychainStatus::param);
        EXPECT_EQ(store->update({odd, {}}, {}), KeychainStatus::param);
        EXPECT_EQ(store->update({}, {.account = odd}), KeychainStatus::param);
        answer({Answer{}});  // to the access object
        EXPECT_EQ(store->add({"s", odd, {}, "", {}, ""}), KeychainStatus::param);
        EXPECT_EQ(store->remove({{}, odd}), KeychainStatus::param);
        EXPECT_EQ(takeCalls(), Strings{"SecAccessCreate '' []"});
    }
}

TEST_F(SecurityFrameworkKeychain, TakesNoAnswerOfAnotherShapeForAValue) {
    const struct {
        const char* name;
        CFTypeRef answer;
        std::size_t alternative;
    } rows[] = {
        {"text", text("secret"), 0}, {"an item", made({}), 0},    {"true", CFRetain(kCFBooleanTrue), 0},
        {"data", data("secret"), 1}, {"empty data", data(""), 1}, {"a dictionary", dictionary({}), 2},
    };
    for (const auto& row : rows) {
        answer({Answer{errSecSuccess, row.answer}});
        EXPECT_EQ(store->copyMatching({}, {}).value.index(), row.alternative) << row.name;
    }
}

TEST_F(SecurityFrameworkKeychain, LeavesOutMembersOfAnotherShape) {
    const auto read = [&](const std::function<CFTypeRef(int)>& member) {
        answer({{errSecSuccess, dictionary({kSecAttrService, member(0), kSecAttrAccount, member(1), kSecAttrLabel,
                                            member(2), kSecAttrComment, member(3), kSecValueData, member(4),
                                            kSecValuePersistentRef, member(5)})}});
        const auto found = std::get<KeychainDictionary>(store->copyMatching({}, {}).value);
        return std::vector{found.service, found.account, found.label,
                           found.comment, found.data,    found.persistentReference};
    };
    using Members = std::vector<std::optional<std::string>>;
    const auto isText = [](int index) { return index < 4; };
    const std::string key = "\xF0\x9F\x94\x91";
    EXPECT_EQ(read([&](int index) {
                  const auto content = key + std::to_string(index);
                  return isText(index) ? text(content) : data(content);
              }),
              (Members{key + "0", key + "1", key + "2", key + "3", key + "4", key + "5"}));
    EXPECT_EQ(read([&](int index) { return isText(index) ? data("a") : text("a"); }), Members(6));
    EXPECT_EQ(read([&](int index) { return isText(index) ? text("half a pair: \xED\xA0\x80") : made({}); }),
              Members(6));
}

TEST_F(SecurityFrameworkKeychain, HasTheSystemsWords) {
    answer({Answer{errSecSuccess, text("Words.")}, Answer{}});
    EXPECT_EQ(store->message(KeychainStatus::authFailed), "Words.");
    EXPECT_EQ(store->message(KeychainStatus::authFailed), std::nullopt);
    EXPECT_EQ(takeCalls(), (Strings{"SecCopyErrorMessageString -25293", "SecCopyErrorMessageString -25293"}));
    EXPECT_EQ(store->state().status, KeychainStatus::success);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
