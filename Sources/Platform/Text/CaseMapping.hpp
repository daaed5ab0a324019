#pragma once

#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// `text` in upper case as Unicode has it for no language in particular. Ill-formed UTF-8 becomes U+FFFD.
[[nodiscard]] std::string upperCased(std::string_view text);

}  // namespace Tarnwick_API::Platform
