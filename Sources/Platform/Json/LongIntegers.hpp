#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

/// The JSON text with every integer literal beyond 64 bits written as a real (`1e0` for `1`), and room for the parser's
/// padding behind it. The parser refuses such integers, though the number is good JSON; anything wrong with the text
/// stays as wrong as it was.
[[nodiscard]] Bytes withLongIntegersAsReals(std::string_view json);

}  // namespace Tarnwick_API::Platform
