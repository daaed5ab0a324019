#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <optional>

namespace Tarnwick_API::Platform {

/// `parameters` as a compact JSON object: keys in ascending byte order at every level, `/` written as `\/`, text that
/// is no UTF-8 mended with U+FFFD. None when a value is NaN or infinite, which JSON can't express.
[[nodiscard]] std::optional<Bytes> encodeJson(const Parameters& parameters);

}  // namespace Tarnwick_API::Platform
