#pragma once

#include <string>

namespace Tarnwick_API::Platform {

/// A buffer of bytes. Not necessarily text: it may hold NUL and anything that is not UTF-8.
using Bytes = std::string;

}  // namespace Tarnwick_API::Platform
