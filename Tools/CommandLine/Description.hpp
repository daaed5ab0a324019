#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace CommandLine {

/// An option, or an argument without dashes, as help, manual page and completions show it.
struct OptionDescription {
    /// As one types them: "-v", "--verbose". An argument has one, in capitals.
    std::vector<std::string> names = {};
    /// What stands for the value: "FILE". Empty for a flag.
    std::string placeholder;
    /// The words that the value may be; empty when it may be another.
    std::vector<std::string> words;
    std::string text;
    /// The environment variable that stands in for it, if any.
    std::string variable;
    /// The title that it is listed under.
    std::string group;
    bool isRequired = false;
    bool isRepeatable = false;
};

/// The options of `app` itself, hidden ones left out.
[[nodiscard]] std::vector<OptionDescription> optionsOf(const CLI::App& app);

[[nodiscard]] std::vector<OptionDescription> argumentsOf(const CLI::App& app);

[[nodiscard]] std::vector<const CLI::App*> commandsOf(const CLI::App& app);

/// The one of `commandsOf` that has the name; null when none has.
[[nodiscard]] const CLI::App* commandNamed(const CLI::App& app, const std::string& name);

/// The command that the parsed words have led to: the program itself when they name none.
[[nodiscard]] const CLI::App& parsedCommand(const CLI::App& program);

/// "tarnwick keychain status"
[[nodiscard]] std::string fullName(const CLI::App& app);

/// What may follow the name: "[OPTIONS] [USER]".
[[nodiscard]] std::string synopsis(const CLI::App& app);

}  // namespace CommandLine
