#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace CommandLine {

/// A word that may be typed, and what shells that can show it say beside it.
struct Candidate {
    std::string word;
    std::string text;
};

/// Where the words come from that stand for a placeholder, beyond what `app` itself knows.
using WordSources = std::map<std::string, std::function<std::vector<Candidate>()>>;

/// The words after "--complete", by which the completion scripts ask what may come next; none when nobody asks so.
[[nodiscard]] std::optional<std::vector<std::string>> wordsToComplete(int argumentCount, const char* const* arguments);

/// What the last of `words`, which may be empty, can become after those before it: per line a word, a tab and a text;
/// or ":files" or ":folders", which the shell knows better. Neither runs callbacks nor reads settings.
[[nodiscard]] std::string completions(const CLI::App& app, const std::vector<std::string>& words,
                                      const WordSources& sources = {});

/// The script that makes a shell ask `program`. `shell` is one of `completionShells`.
[[nodiscard]] std::string completionScript(const std::string& shell, const std::string& program);

[[nodiscard]] const std::vector<std::string>& completionShells();

}  // namespace CommandLine
