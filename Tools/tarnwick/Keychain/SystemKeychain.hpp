#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <memory>

namespace TarnwickClient {

/// The store in the system's own keychain, and in nothing else.
std::shared_ptr<Tarnwick_API::Platform::KeychainStore> systemKeychain();

}  // namespace TarnwickClient
