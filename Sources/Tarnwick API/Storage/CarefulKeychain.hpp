#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <memory>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// The process-wide keychain as the library asks it: what a host's own store throws counts as `notAvailable`, so that
/// an operation that keeps a token still completes. The debug channel tells.
class CarefulKeychain {
public:
    CarefulKeychain();

    [[nodiscard]] Platform::KeychainAnswer copyMatching(const Platform::KeychainQuery& query,
                                                        const Platform::KeychainReturn& wanted) const;
    [[nodiscard]] Platform::KeychainStatus update(const Platform::KeychainQuery& target,
                                                  const Platform::KeychainChanges& changes) const;
    [[nodiscard]] Platform::KeychainStatus add(const Platform::KeychainItem& item) const;
    [[nodiscard]] Platform::KeychainStatus remove(const Platform::KeychainQuery& target) const;
    [[nodiscard]] std::optional<std::string> message(Platform::KeychainStatus status) const;

private:
    std::shared_ptr<Platform::KeychainStore> store_;
};

}  // namespace Tarnwick_API
