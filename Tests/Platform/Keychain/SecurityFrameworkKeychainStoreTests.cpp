// What the translation makes of answers that are not as they should be.

#include "FrameworkObject.hpp"
#include "PrintKeychainStatus.hpp"
#include "SecurityFrameworkDouble.hpp"

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using Object = SecurityFrameworkDouble::FrameworkObject;
using SecurityFrameworkDouble::fail;
using SecurityFrameworkDouble::madeObject;

CFTypeRef text(const char* content) {
    return madeObject({.kind = Object::Kind::string, .text = content});
}

CFTypeRef data(const char* content) {
    return madeObject({.kind = Object::Kind::data, .text = content});
}

class SecurityFrameworkKeychain : public ::testing::Test {
protected:
    std::shared_ptr<KeychainStore> store = SecurityFrameworkDouble::makeKeychainStore();
};

TEST_F(SecurityFrameworkKeychain, TakesNoAnswerOfAnotherShapeForAValue) {
    const struct {
        const char* name;
        CFTypeRef answer;
        std::size_t alternative;
    } rows[] = {
        {"text", text("secret"), 0},
        {"an item", madeObject({.kind = Object::Kind::item}), 0},
        {"an array", madeObject({.kind = Object::Kind::array}), 0},
        {"true", CFRetain(kCFBooleanTrue), 0},
        {"data", data("secret"), 1},
        {"empty data", data(""), 1},
        {"a dictionary", madeObject({.kind = Object::Kind::dictionary}), 2},
    };
    for (const auto& row : rows) {
        SecurityFrameworkDouble::answerNext(row.answer);
        const auto answer = store->copyMatching({}, {.attributes = true, .data = true});
        EXPECT_EQ(answer.status, KeychainStatus::success);
        EXPECT_EQ(answer.value.index(), row.alternative) << row.name;
    }
}

TEST_F(SecurityFrameworkKeychain, LeavesOutMembersOfAnotherShape) {
    const CFStringRef texts[] = {kSecAttrService, kSecAttrAccount, kSecAttrLabel, kSecAttrComment};
    const CFStringRef bytes[] = {kSecValueData, kSecValuePersistentRef};
    const auto read = [&](const std::function<CFTypeRef()>& textMember, const std::function<CFTypeRef()>& dataMember) {
        Object dictionary{.kind = Object::Kind::dictionary};
        for (const auto* const key : texts) {
            dictionary.members.emplace_back(key, textMember());
        }
        for (const auto* const key : bytes) {
            dictionary.members.emplace_back(key, dataMember());
        }
        SecurityFrameworkDouble::answerNext(madeObject(std::move(dictionary)));
        const auto found = std::get<KeychainDictionary>(store->copyMatching({}, {.attributes = true}).value);
        return std::vector{found.service, found.account, found.label,
                           found.comment, found.data,    found.persistentReference};
    };
    const std::vector<std::optional<std::string>> none(6);
    EXPECT_EQ(read([] { return text("\xF0\x9F\x94\x91"); }, [] { return data("\xFF"); }),
              (std::vector<std::optional<std::string>>{"\xF0\x9F\x94\x91", "\xF0\x9F\x94\x91", "\xF0\x9F\x94\x91",
                                                       "\xF0\x9F\x94\x91", "\xFF", "\xFF"}));
    EXPECT_EQ(read([] { return data("a"); }, [] { return text("a"); }), none);
    EXPECT_EQ(read([] { return text("half a pair: \xED\xA0\x80"); }, [] { return CFRetain(kCFBooleanTrue); }), none);
}

TEST_F(SecurityFrameworkKeychain, PassesEveryStatusOn) {
    for (const auto status : {KeychainStatus::userCanceled, KeychainStatus{-25244}, KeychainStatus::param}) {
        const auto number = static_cast<OSStatus>(status);
        for (const auto* const function : {"SecItemCopyMatching", "SecItemUpdate", "SecItemAdd", "SecItemDelete"}) {
            fail(function, {number});
        }
        EXPECT_EQ(store->copyMatching({}, {}).status, status);
        EXPECT_EQ(store->update({}, {}), status);
        EXPECT_EQ(store->add({"s", "a", {}, "", {}, ""}), status);
        EXPECT_EQ(store->remove({}), status);
    }
    fail("SecCopyErrorMessageString", {errSecParam});
    EXPECT_EQ(store->message(KeychainStatus::authFailed), std::nullopt);
    EXPECT_EQ(store->state().status, KeychainStatus::success);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
