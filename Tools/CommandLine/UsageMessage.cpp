#include "CommandLine/UsageMessage.hpp"

#include "CommandLine/Description.hpp"
#include "CommandLine/Help.hpp"
#include "CommandLine/NearestWord.hpp"

#include <algorithm>
#include <vector>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

/// The name as one types it, without the program's.
std::string shortName(const CLI::App& command) {
    const auto name = fullName(command);
    return command.get_parent() == nullptr ? std::string{} : name.substr(name.find(' ') + 1);
}

std::vector<std::string> commandNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const auto* each : commandsOf(command)) {
        names.push_back(shortName(*each));
    }
    return names;
}

std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const auto* app = &command; app != nullptr; app = app->get_parent()) {
        for (const auto& option : optionsOf(*app)) {
            std::copy_if(option.names.begin(), option.names.end(), std::back_inserter(names),
                         [](const auto& name) { return name.starts_with("--"); });
        }
    }
    return names;
}

/// The parser's words begin with the option's name and go on about how many values are required.
std::string wrongCount(const CLI::App& command, const std::string& words) {
    const auto name = words.substr(0, words.find(':'));
    for (const auto* app = &command; app != nullptr; app = app->get_parent()) {
        for (const auto& option : optionsOf(*app)) {
            const auto isIt = std::find(option.names.begin(), option.names.end(), name) != option.names.end();
            if (isIt && !option.placeholder.empty()) {
                return name + ": needs " + option.placeholder;
            }
        }
    }
    return words;
}

}  // namespace

std::string unknownWord(const CLI::App& command, const std::string& word) {
    if (word.starts_with('-')) {
        const auto name = word.substr(0, word.find('='));
        return "unknown option " + name + suggestion(name, optionNames(command));
    }
    const auto names = commandNames(command);
    if (names.empty()) {
        return "unexpected argument: " + word;
    }
    const auto name = command.get_parent() == nullptr ? word : shortName(command) + " " + word;
    return "unknown command " + name + suggestion(name, names);
}

std::string helpHint(const CLI::App& program) {
    const auto& command = parsedCommand(program);
    return "See " + fullName(command.get_name() == helpCommand ? program : command) + " --help";
}

std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
    const auto isAboutWords = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr ||
                              dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        return wrongCount(parsedCommand(app), error.what());
    }
    if (!isAboutWords) {
        return error.what();
    }
    const auto& command = parsedCommand(app);
    if (const auto words = app.remaining(true); !words.empty()) {
        return unknownWord(command, words.front());
    }
    if (const auto names = commandNames(command); !names.empty()) {
        return "a command is missing, one of: " + CLI::detail::join(names, ", ");
    }
    return error.what();
}

}  // namespace CommandLine
