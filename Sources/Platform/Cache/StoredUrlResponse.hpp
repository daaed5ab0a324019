#pragma once

#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <cstddef>
#include <memory>
#include <string_view>

namespace Tarnwick_API::Platform {

using UrlResponsePointer = std::shared_ptr<const CachedUrlResponse>;

/// The bytes that an entry counts for.
[[nodiscard]] std::size_t sizeOfEntry(std::string_view key, const CachedUrlResponse& response);

/// Whether both hold the same, wherever they are kept.
[[nodiscard]] bool holdSame(const CachedUrlResponse& left, const CachedUrlResponse& right);

}  // namespace Tarnwick_API::Platform
