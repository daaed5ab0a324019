#pragma once

#include <Platform/Cache/StoredUrlResponse.hpp>

#include <cstdint>

namespace Tarnwick_API::Platform {

/// An entry as the disk has it. Its policy is `allowed`: others do not get there.
struct EncodedResponse {
    /// Status, headers and user information, with their types.
    Bytes head;
    std::shared_ptr<const Bytes> body;
    /// By `sizeOfEntry`.
    std::int64_t size = 0;
    /// Over key, head and body.
    std::int64_t checkValue = 0;
};

[[nodiscard]] EncodedResponse encode(std::string_view key, const CachedUrlResponse& response);

/// Null for anything but what `encode` has made for this key.
[[nodiscard]] UrlResponsePointer decode(std::string_view key, const EncodedResponse& encoded);

}  // namespace Tarnwick_API::Platform
