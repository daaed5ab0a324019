#pragma once

#include <Platform/Logging/DebugChannel.hpp>

namespace Tarnwick_API::Platform {

/// What a look-up of the host's gives; nothing when it throws, which the host's developer is told. An operation that
/// is on its way can't end in it.
template <typename Ask>
auto askHost(const char* lookup, const Ask& ask) -> decltype(ask()) {
    try {
        return ask();
    } catch (...) {
        DebugChannel::writeException("A look-up of the host's has failed", lookup);
    }
    return {};
}

}  // namespace Tarnwick_API::Platform
