#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TarnwickClient {

/// `text` on one line and harmless to a terminal: control characters, which may come from the service, and bytes that
/// are no UTF-8 are replaced.
[[nodiscard]] std::string printable(std::string_view text);

/// The terminal columns that printable text takes.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// Printable text cut to `width` columns, the last of them an ellipsis when something was cut off.
[[nodiscard]] std::string shortened(const std::string& text, std::size_t width);

}  // namespace TarnwickClient
