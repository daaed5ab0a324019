#pragma once

#include <string>

namespace CLI {
class App;
}

namespace CommandLine {

/// What the manual page says beyond the help, in the form of `blocksOf`.
struct Manual {
    std::string version;
    std::string description;
    /// Sections, each with its title.
    std::string notes;
};

/// The page of `program` in section 1 of the manual, in the macros of man(7), with its commands and options as the help
/// has them.
[[nodiscard]] std::string manualPage(const CLI::App& program, const Manual& manual);

}  // namespace CommandLine
