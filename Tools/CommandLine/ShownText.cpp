#include "CommandLine/ShownText.hpp"

#include "CommandLine/Completion.hpp"
#include "CommandLine/Description.hpp"
#include "CommandLine/Help.hpp"
#include "CommandLine/UsageMessage.hpp"
#include "CommandLine/WordChoice.hpp"

#include <algorithm>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

/// Ends the parsing with something to print.
[[noreturn]] void show(const std::string& text) {
    throw CLI::Success{text, CLI::ExitCodes::Success};
}

const CLI::App& commandOf(const CLI::App& program, const std::vector<std::string>& words) {
    const auto* place = &program;
    for (const auto& word : words) {
        const auto* command = commandNamed(*place, word);
        if (command == nullptr) {
            throw CLI::ParseError{unknownWord(*place, word), CLI::ExitCodes::ExtrasError};
        }
        place = command;
    }
    return *place;
}

/// Whatever else is wrong with a command line, or with the environment: who asks for help gets it.
bool isHelpWanted(const CLI::App& command) {
    const auto* option = command.get_help_ptr();
    const auto isAskedFor = option != nullptr && option->count() > 0;
    return isAskedFor || (command.get_parent() != nullptr && isHelpWanted(*command.get_parent()));
}

}  // namespace

void addDocumentationOptions(CLI::App& program, const Manual& manual) {
    program.get_help_ptr()->description("Print this help");
    program.set_version_flag("--version", program.get_name() + " " + manual.version, "Print the version");
    // Both are done while the words are read, so that neither the environment nor the configuration file can spoil
    // them.
    program
        .add_option_function<std::string>(
            "--completion",
            [&program](const std::string& shell) {
                const auto& shells = completionShells();
                if (std::find(shells.begin(), shells.end(), shell) == shells.end()) {
                    throw CLI::ParseError{"--completion: " + noneOf(shell, shells), CLI::ExitCodes::ValidationError};
                }
                show(completionScript(shell, program.get_name()));
            },
            "Print the completion script for a shell: " + CLI::detail::join(completionShells(), ", "))
        ->trigger_on_parse()
        ->type_name("SHELL:" + closedSet(completionShells()))
        ->configurable(false);
    program
        .add_flag_callback(
            "--manual", [&program, manual] { show(manualPage(program, manual)); },
            "Print the manual page, for: man -l -")
        ->trigger_on_parse()
        ->configurable(false);
}

void addHelpCommand(CLI::App& program) {
    auto* command = program.add_subcommand(helpCommand, "Show the help of a command");
    const auto words = std::make_shared<std::vector<std::string>>();
    command->add_option("command", *words, "The command's words, such as keychain status");
    // At once, before the settings are looked at.
    command->immediate_callback();
    command->callback([&program, words] {
        static_cast<void>(commandOf(program, *words));
        throw CLI::CallForHelp{};
    });
}

std::optional<std::string> shownText(const CLI::App& program, const CLI::ParseError& error, std::size_t width) {
    const auto& command = parsedCommand(program);
    if (isHelpWanted(command)) {
        return helpText(command, width);
    }
    if (dynamic_cast<const CLI::CallForHelp*>(&error) != nullptr) {
        return helpText(commandOf(program, command.get_option("command")->results()), width);
    }
    if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) {
        return std::nullopt;
    }
    const std::string text = error.what();
    return text.ends_with('\n') ? text : text + "\n";
}

}  // namespace CommandLine
