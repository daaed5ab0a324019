#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <string>

namespace Tarnwick_API::Platform {

/// `parameters` as "name=value" pairs joined by "&", keys in ascending byte order at every level. A list gives one
/// pair "name[]" for each element, a map "name[key]" for each member; flags are 1 and 0, reals have up to 16 digits.
/// Every byte but letters, digits and `-._~/?` is written as `%XX`; text that is no UTF-8 is mended with U+FFFD first.
[[nodiscard]] std::string encodeQuery(const Parameters& parameters);

}  // namespace Tarnwick_API::Platform
