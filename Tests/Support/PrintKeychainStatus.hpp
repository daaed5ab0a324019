#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <ostream>

namespace Tarnwick_API::Platform {

/// How GoogleTest shows a status.
inline void PrintTo(KeychainStatus status, std::ostream* out) {
    *out << static_cast<std::int32_t>(status);
}

}  // namespace Tarnwick_API::Platform
