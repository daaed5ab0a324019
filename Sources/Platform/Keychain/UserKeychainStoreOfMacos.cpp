#include <Tarnwick_API/Platform/KeychainStore.hpp>

namespace Platform {

// The user's keychain is always there, and answers or prompts by the system's own rules.
std::shared_ptr<KeychainStore> makeUserKeychainStore(std::string /*file*/, std::chrono::milliseconds /*patience*/) {
    return makeSecurityFrameworkKeychainStore();
}

}  // namespace Platform
