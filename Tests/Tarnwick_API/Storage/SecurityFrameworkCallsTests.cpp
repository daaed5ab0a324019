// What the token store's operations come to at the system's keychain of macOS: each call with all that it is given.

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include "SecurityFrameworkDouble.hpp"

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using SecurityFrameworkDouble::fail;
using Strings = std::vector<std::string>;

const std::string agent = "/usr/libexec/neagent";
const std::string preferences =
    "/System/Library/PreferencePanes/Network.prefPane/Contents/XPCServices/"
    "com.apple.preference.network.remoteservice.xpc";

std::string call(const std::string& function, const std::string& arguments = "") {
    return function + " {kSecClass=kSecClassGenericPassword kSecAttrService='s'" + arguments + "}";
}

const std::string changes = " {kSecAttrAccount='a' kSecValueData=<p> kSecAttrComment='requires user interaction'}";
const std::string lookUp = call("SecItemCopyMatching", " kSecReturnAttributes=true");
const std::string update = call("SecItemUpdate", " kSecAttrAccount='old'") + changes;
const std::string remove = call("SecItemDelete");
const std::string one = " kSecMatchLimit=kSecMatchLimitOne";

Strings addition(const std::string& label = "VPN App", const std::string& data = " kSecValueData=<p>",
                 const std::string& trusted = "self " + agent + " " + preferences,
                 const std::string& access = " kSecAttrAccess=access") {
    return {"SecTrustedApplicationCreateFromPath " + agent, "SecTrustedApplicationCreateFromPath " + preferences,
            "SecTrustedApplicationCreateFromPath self", "SecAccessCreate '" + label + "' [" + trusted + "]",
            call("SecItemAdd", " kSecAttrAccount='a'" + data + " kSecAttrLabel='" + label +
                                   "' kSecAttrAccessible=kSecAttrAccessibleAlways" + access +
                                   " kSecAttrComment='requires user interaction'")};
}

Strings operator+(Strings left, const Strings& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TEST(KeychainOnMacOs, MakesTheseCallsOfTheFramework) {
    const auto set = [] { Keychain::setPassword("s", "a", "p"); };
    const auto failing = [](const std::string& function, const std::vector<OSStatus>& statuses) {
        return [=] { fail(function, statuses); };
    };
    const Strings message{"SecCopyErrorMessageString -25293"};
    const struct {
        const char* name;
        bool hasItem;
        std::function<void()> prepare, act;
        Strings calls;
    } rows[] = {
        {"add", false, {}, set, Strings{lookUp} + addition()},
        {"add without encodable password",
         false,
         {},
         [] { Keychain::setPassword("s", "a", "\xFF"); },
         Strings{lookUp} + addition("VPN App", "")},
        {"application with a name", false,
         [] {
             Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleName", "Na\xC3\xAFve"}}});
         },
         set, Strings{lookUp} + addition("Na\xC3\xAFve")},
        {"an unknown application", false, failing("SecTrustedApplicationCreateFromPath", {errSecSuccess, errSecParam}),
         set, Strings{lookUp} + addition("VPN App", " kSecValueData=<p>", "self " + agent + " missing")},
        {"no caller", false,
         failing("SecTrustedApplicationCreateFromPath", {errSecSuccess, errSecSuccess, errSecParam}), set,
         Strings{lookUp} + addition("VPN App", " kSecValueData=<p>", "missing " + agent + " " + preferences)},
        {"no access object", false, failing("SecAccessCreate", {errSecParam}), set,
         Strings{lookUp} + addition("VPN App", " kSecValueData=<p>", "self " + agent + " " + preferences, "")},
        {"change", true, {}, set, {lookUp, update}},
        {"change fails", true, failing("SecItemUpdate", {-25293}), set,
         Strings{lookUp, update} + message + Strings{remove} + addition()},
        {"look-up fails", true, failing("SecItemCopyMatching", {-25293}), set, Strings{lookUp, remove} + addition()},
        {"an answer of no shape", true,
         [] { SecurityFrameworkDouble::answerNext(CFDataCreate(kCFAllocatorDefault, nullptr, 0)); }, set,
         Strings{lookUp, remove} + addition()},
        {"delete", true, {}, [] { Keychain::deleteItem("s"); }, {remove}},
        {"password",
         true,
         {},
         [] { static_cast<void>(Keychain::getPassword("s", "old")); },
         {call("SecItemCopyMatching", " kSecAttrAccount='old'" + one + " kSecReturnData=true")}},
        {"reference",
         true,
         {},
         [] { static_cast<void>(Keychain::getPasswordReference("s", "old")); },
         {call("SecItemCopyMatching", " kSecAttrAccount='old'" + one + " kSecReturnPersistentRef=true")}},
        {"token",
         true,
         {},
         [] { static_cast<void>(Keychain::getTokenData("s")); },
         {call("SecItemCopyMatching", one + " kSecReturnAttributes=true kSecReturnPersistentRef=true")}},
        {"login",
         true,
         {},
         [] { static_cast<void>(Keychain::hasLoginData("s")); },
         {call("SecItemCopyMatching", one + " kSecReturnAttributes=true kSecReturnData=true")}},
        {"flag",
         true,
         {},
         [] { static_cast<void>(Keychain::requiresUserInteraction("s")); },
         {call("SecItemCopyMatching", one + " kSecReturnAttributes=true")}},
        {"reset",
         true,
         {},
         [] { Keychain::resetRequiresUserInteraction("s"); },
         {call("SecItemCopyMatching"), call("SecItemUpdate") + " {kSecAttrComment=''}"}},
        {"reset fails", true, failing("SecItemUpdate", {-25293}), [] { Keychain::resetRequiresUserInteraction("s"); },
         Strings{call("SecItemCopyMatching"), call("SecItemUpdate") + " {kSecAttrComment=''}"} + message},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto store = SecurityFrameworkDouble::makeKeychainStore();
        Keychain::setStore(store);
        if (row.hasItem) {
            ASSERT_EQ(store->add({"s", "old", "old secret", "", {}, ""}), Platform::KeychainStatus::success);
            static_cast<void>(SecurityFrameworkDouble::takeCalls());
        }
        if (row.prepare) {
            row.prepare();
        }
        ::testing::internal::CaptureStdout();
        row.act();
        static_cast<void>(::testing::internal::GetCapturedStdout());
        EXPECT_THAT(SecurityFrameworkDouble::takeCalls(), ::testing::ElementsAreArray(row.calls));
        Keychain::setStore(nullptr);
        Platform::Bundle::setMain({});
    }
}

}  // namespace
}  // namespace Tarnwick_API
