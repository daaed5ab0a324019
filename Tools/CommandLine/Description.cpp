#include "CommandLine/Description.hpp"

#include "CommandLine/PlainText.hpp"

#include <algorithm>
#include <iterator>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

/// The parser keeps what the validators say of themselves behind the name of the type: "TEXT:{auto,system}".
std::vector<std::string> closedSetOf(const CLI::Option& option) {
    const auto type = option.get_type_name();
    const auto start = type.find('{');
    const auto end = type.find('}');
    if (start == std::string::npos || end == std::string::npos) {
        return {};
    }
    return CLI::detail::split(type.substr(start + 1, end - start - 1), ',');
}

std::string placeholderOf(const CLI::Option& option) {
    if (option.get_items_expected_max() == 0) {
        return {};
    }
    if (const auto& chosen = option.get_option_text(); !chosen.empty()) {
        return chosen;
    }
    const auto type = option.get_type_name();
    const auto name = type.substr(0, type.find(':'));
    return name == "INT" || name == "UINT" ? "NUMBER" : name;
}

OptionDescription describe(const CLI::Option& option) {
    OptionDescription description{.placeholder = placeholderOf(option),
                                  .words = closedSetOf(option),
                                  .text = option.get_description(),
                                  .variable = option.get_envname(),
                                  .group = option.get_group(),
                                  .isRequired = option.get_required(),
                                  .isRepeatable = option.get_expected_max() >= CLI::detail::expected_max_vector_size};
    if (option.get_positional()) {
        description.names.push_back(upperCase(option.get_single_name()));
    }
    for (const auto& name : option.get_snames()) {
        description.names.push_back("-" + name);
    }
    for (const auto& name : option.get_lnames()) {
        description.names.push_back("--" + name);
    }
    if (option.get_option_text().empty() && !option.get_default_str().empty()) {
        description.text += " [" + option.get_default_str() + "]";
    }
    return description;
}

/// Those of the groups without a name, which are no commands, included.
std::vector<OptionDescription> described(const CLI::App& app, bool arePositional) {
    std::vector<OptionDescription> descriptions;
    const auto all = app.get_options([&](const CLI::Option* option) {
        return option->get_positional() == arePositional && !option->get_group().empty();
    });
    std::transform(all.begin(), all.end(), std::back_inserter(descriptions),
                   [](const CLI::Option* option) { return describe(*option); });
    for (const auto* group : app.get_subcommands([](const CLI::App* each) { return each->get_name().empty(); })) {
        for (auto& description : described(*group, arePositional)) {
            // A group has its own way to ask for help, as if it were a command.
            if (description.names.back() != "--help") {
                description.group = group->get_group();
                descriptions.push_back(std::move(description));
            }
        }
    }
    return descriptions;
}

}  // namespace

std::vector<OptionDescription> optionsOf(const CLI::App& app) {
    return described(app, false);
}

std::vector<OptionDescription> argumentsOf(const CLI::App& app) {
    return described(app, true);
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands(
        [](const CLI::App* each) { return !each->get_name().empty() && !each->get_group().empty(); });
}

const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
    const auto commands = commandsOf(app);
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const auto* command) { return command->get_name() == name; });
    return found == commands.end() ? nullptr : *found;
}

const CLI::App& parsedCommand(const CLI::App& program) {
    const auto* place = &program;
    for (auto commands = place->get_subcommands(); !commands.empty(); commands = place->get_subcommands()) {
        place = commands.front();
    }
    return *place;
}

std::string fullName(const CLI::App& app) {
    return app.get_parent() == nullptr ? app.get_name() : fullName(*app.get_parent()) + " " + app.get_name();
}

std::string synopsis(const CLI::App& app) {
    std::string text = "[OPTIONS]";
    for (const auto& argument : argumentsOf(app)) {
        const auto name = argument.names.front() + (argument.isRepeatable ? "..." : "");
        text += argument.isRequired ? " " + name : " [" + name + "]";
    }
    return commandsOf(app).empty() ? text : text + " COMMAND";
}

}  // namespace CommandLine
