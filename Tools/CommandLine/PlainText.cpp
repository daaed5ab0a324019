#include "CommandLine/PlainText.hpp"

#include <algorithm>
#include <cctype>

namespace CommandLine {

namespace {

constexpr std::string_view blanks = "  ";

Block blockOf(std::string_view line, std::string_view next) {
    if (!line.starts_with(blanks)) {
        const auto isTitle = line.ends_with(':') && !next.empty() && !next.starts_with('\n');
        return {isTitle ? Block::Kind::title : Block::Kind::paragraph,
                std::string{isTitle ? line.substr(0, line.size() - 1) : line}};
    }
    line.remove_prefix(blanks.size());
    const auto gap = line.find(blanks);
    if (gap == std::string_view::npos || gap == 0) {
        return {Block::Kind::literal, std::string{line}};
    }
    return {Block::Kind::definition, std::string{line.substr(line.find_first_not_of(' ', gap))},
            std::string{line.substr(0, gap)}};
}

}  // namespace

std::vector<Block> blocksOf(std::string_view text) {
    std::vector<Block> blocks;
    bool goesOn = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty()) {
            goesOn = false;
            continue;
        }
        if (goesOn && !line.starts_with(blanks)) {
            blocks.back().text.append(" ").append(line);
            continue;
        }
        blocks.push_back(blockOf(line, text));
        goesOn = blocks.back().kind == Block::Kind::paragraph;
    }
    return blocks;
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
    return text;
}

}  // namespace CommandLine
