#include "AppleFrameworksDouble.hpp"
#include "DoubleState.hpp"

#include <deque>
#include <utility>

#include <gtest/gtest.h>

using AppleFrameworksDouble::Answer;
using AppleFrameworksDouble::constant;
using AppleFrameworksDouble::shown;

namespace {

std::vector<std::string> calls;
std::deque<Answer> answers;

Answer recorded(const std::string& call) {
    calls.push_back(call);
    if (answers.empty()) {
        ADD_FAILURE() << "no answer is left for " << call;
        return {errSecParam};
    }
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
}

}  // namespace

namespace AppleFrameworksDouble {

void answer(const std::vector<Answer>& next) {
    answers.insert(answers.end(), next.begin(), next.end());
}

std::vector<std::string> takeCalls() {
    return std::exchange(calls, {});
}

void expectNothingLeft() {
    EXPECT_TRUE(std::exchange(answers, {}).empty()) << "not all answers have been asked for";
    EXPECT_FALSE(forgetDispatchedWork()) << "not all work has been run";
    forgetKnown();
    for (const auto& object : objects()) {
        EXPECT_TRUE(object.isConstant || object.references == 0) << "nobody releases " << shown(&object);
    }
    calls.clear();
    objects().remove_if([](const Object& object) { return !object.isConstant; });
}

}  // namespace AppleFrameworksDouble

const CFStringRef kSecClass = constant("kSecClass");
const CFStringRef kSecClassGenericPassword = constant("kSecClassGenericPassword");
const CFStringRef kSecAttrAccess = constant("kSecAttrAccess");
const CFStringRef kSecAttrAccessible = constant("kSecAttrAccessible");
const CFStringRef kSecAttrAccessibleAlways = constant("kSecAttrAccessibleAlways");
const CFStringRef kSecAttrAccount = constant("kSecAttrAccount");
const CFStringRef kSecAttrComment = constant("kSecAttrComment");
const CFStringRef kSecAttrLabel = constant("kSecAttrLabel");
const CFStringRef kSecAttrService = constant("kSecAttrService");
const CFStringRef kSecMatchLimit = constant("kSecMatchLimit");
const CFStringRef kSecMatchLimitOne = constant("kSecMatchLimitOne");
const CFStringRef kSecReturnAttributes = constant("kSecReturnAttributes");
const CFStringRef kSecReturnData = constant("kSecReturnData");
const CFStringRef kSecReturnPersistentRef = constant("kSecReturnPersistentRef");
const CFStringRef kSecValueData = constant("kSecValueData");
const CFStringRef kSecValuePersistentRef = constant("kSecValuePersistentRef");

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    const auto answer = recorded("SecItemCopyMatching " + shown(query));
    *result = answer.object;
    return answer.status;
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result) {
    EXPECT_EQ(result, nullptr) << "nobody reads it";
    return recorded("SecItemAdd " + shown(attributes)).status;
}

OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate) {
    return recorded("SecItemUpdate " + shown(query) + " " + shown(attributesToUpdate)).status;
}

OSStatus SecItemDelete(CFDictionaryRef query) {
    return recorded("SecItemDelete " + shown(query)).status;
}

OSStatus SecAccessCreate(CFStringRef descriptor, CFArrayRef trustedlist, SecAccessRef* accessRef) {
    const auto answer = recorded("SecAccessCreate " + shown(descriptor) + " " + shown(trustedlist));
    *accessRef = static_cast<SecAccessRef>(const_cast<void*>(answer.object));
    return answer.status;
}

OSStatus SecTrustedApplicationCreateFromPath(const char* path, SecTrustedApplicationRef* app) {
    const auto answer = recorded(std::string{"SecTrustedApplicationCreateFromPath "} + (path == nullptr ? "-" : path));
    *app = static_cast<SecTrustedApplicationRef>(const_cast<void*>(answer.object));
    return answer.status;
}

CFStringRef SecCopyErrorMessageString(OSStatus status, void* reserved) {
    EXPECT_EQ(reserved, nullptr);
    return static_cast<CFStringRef>(recorded("SecCopyErrorMessageString " + std::to_string(status)).object);
}
