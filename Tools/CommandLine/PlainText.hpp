#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CommandLine {

/// A piece of a text that help and manual page both show.
struct Block {
    enum class Kind { title, paragraph, literal, definition };
    Kind kind;
    std::string text;
    /// What a definition is of.
    std::string term = {};
};

/// Takes plain text apart. Empty lines part paragraphs. A line that begins one and ends with a colon is a title, unless
/// an empty line follows; one that starts with two blanks stands for itself, or is a definition when two blanks follow
/// its first words.
[[nodiscard]] std::vector<Block> blocksOf(std::string_view text);

/// With its ASCII letters in capitals.
[[nodiscard]] std::string upperCase(std::string text);

}  // namespace CommandLine
