#pragma once

#include <Tarnwick_API/Platform/KeychainStore.hpp>

#include <ostream>

namespace Platform {

/// How GoogleTest shows a status.
inline void PrintTo(KeychainStatus status, std::ostream* out) {
    *out << static_cast<std::int32_t>(status);
}

}  // namespace Platform
