#pragma once

#include <Tarnwick_API/Platform/Json/DecodingError.hpp>

namespace Tarnwick_API::Platform {

/// The one error for whatever makes a text no JSON.
[[nodiscard]] inline DecodingError invalidJson() {
    return {DecodingError::Kind::dataCorrupted, {}, "The given data was not valid JSON."};
}

}  // namespace Tarnwick_API::Platform
