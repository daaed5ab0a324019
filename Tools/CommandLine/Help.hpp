#pragma once

#include <cstddef>
#include <string>

namespace CLI {
class App;
}

namespace CommandLine {

/// The command that shows the help of those beside it.
inline constexpr const char* helpCommand = "help";

/// What `app` is for and how it is used, in lines of `width` columns at most where words allow it.
[[nodiscard]] std::string helpText(const CLI::App& app, std::size_t width);

}  // namespace CommandLine
