#include "CommandLine/WordChoice.hpp"

namespace CommandLine {

std::string closedSet(const std::vector<std::string>& words) {
    return "{" + CLI::detail::join(words, ",") + "}";
}

std::string noneOf(const std::string& word, const std::vector<std::string>& words) {
    return "\"" + word + "\" is none of " + CLI::detail::join(words, ", ");
}

}  // namespace CommandLine
