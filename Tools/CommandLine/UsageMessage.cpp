#include "CommandLine/UsageMessage.hpp"

#include "CommandLine/NearestWord.hpp"

#include <numeric>
#include <vector>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

/// The command that the words have led to, and its name as one types it, without the program's.
struct Place {
    const CLI::App* app;
    std::string prefix;
};

Place placeOf(const CLI::App& program) {
    Place place{&program, {}};
    for (auto commands = program.get_subcommands(); !commands.empty(); commands = place.app->get_subcommands()) {
        place = {commands.front(), place.prefix + commands.front()->get_name() + " "};
    }
    return place;
}

std::vector<std::string> commandNames(const Place& place) {
    std::vector<std::string> names;
    for (const auto* command : place.app->get_subcommands([](const CLI::App* /*any*/) { return true; })) {
        names.push_back(place.prefix + command->get_name());
    }
    return names;
}

std::vector<std::string> optionNames(const Place& place) {
    std::vector<std::string> names;
    for (const auto* app = place.app; app != nullptr; app = app->get_parent()) {
        for (const auto* option : app->get_options()) {
            for (const auto& name : option->get_lnames()) {
                names.push_back("--" + name);
            }
        }
    }
    return names;
}

std::string joined(const std::vector<std::string>& words) {
    return std::accumulate(words.begin(), words.end(), std::string{},
                           [](const auto& text, const auto& word) { return text.empty() ? word : text + ", " + word; });
}

std::string unknownWord(const Place& place, const std::string& word) {
    if (word.starts_with('-')) {
        const auto name = word.substr(0, word.find('='));
        return "unknown option " + name + suggestion(name, optionNames(place));
    }
    const auto names = commandNames(place);
    if (names.empty()) {
        return "unexpected argument: " + word;
    }
    return "unknown command " + place.prefix + word + suggestion(place.prefix + word, names);
}

}  // namespace

std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
    const auto isAboutWords = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr ||
                              dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!isAboutWords) {
        return error.what();
    }
    const auto place = placeOf(app);
    if (const auto words = app.remaining(true); !words.empty()) {
        return unknownWord(place, words.front());
    }
    if (const auto names = commandNames(place); !names.empty()) {
        return "a command is missing, one of: " + joined(names);
    }
    return error.what();
}

}  // namespace CommandLine
