#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

namespace Tarnwick_API::Platform {

// The user's keychain is always there, and answers or prompts by the system's own rules.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the store on other systems keeps it
std::shared_ptr<KeychainStore> makeUserKeychainStore(std::string /*file*/, std::chrono::milliseconds /*timeout*/) {
    return makeSecurityFrameworkKeychainStore();
}

}  // namespace Tarnwick_API::Platform
