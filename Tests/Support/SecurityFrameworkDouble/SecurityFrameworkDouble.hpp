#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <memory>
#include <string>
#include <vector>

#include <Security/Security.h>

/// The system's keychain behind the framework's calls, in memory and under a test's control. It differs from the file
/// keychain of macOS as the framework's documentation does: deleting deletes every match, not the first one, and a
/// persistent reference survives a change of the account. One thread only.
namespace SecurityFrameworkDouble {

/// The library's store on an empty keychain. When it goes, so must have all objects of the framework.
[[nodiscard]] std::shared_ptr<Tarnwick_API::Platform::KeychainStore> makeKeychainStore();

/// The calls since the last time, each with all that it was given; the members of a dictionary in the order in which
/// they were added.
[[nodiscard]] std::vector<std::string> takeCalls();

/// What the next calls of this function return, without doing anything; after them, and for `errSecSuccess`, it does
/// its work. A message that fails is none.
void fail(const std::string& function, const std::vector<OSStatus>& statuses);

/// The next look-up succeeds with `object`, whose reference the caller passes on.
void answerNext(CFTypeRef object);

}  // namespace SecurityFrameworkDouble
