#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

/// What can be said of a body whose end nothing marks but that no more came.
enum class Wholeness { whole, cut, unknown };

/// A body that calls itself JSON is whole when it is one. Unknown of other types, of a lone number, and of an empty
/// body: that may be all that the server meant to say.
[[nodiscard]] Wholeness wholeness(const Bytes& body, std::string_view contentType);

}  // namespace Tarnwick_API::Platform
