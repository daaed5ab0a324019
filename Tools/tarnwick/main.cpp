#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "Client/Client.hpp"
#include "ClientVersion.hpp"
#include "CommandLine/Completion.hpp"
#include "CommandLine/ShownText.hpp"
#include "CommandLine/UsageMessage.hpp"
#include "Commands/Command.hpp"
#include "Configuration/ConfigurationFile.hpp"
#include "Configuration/Settings.hpp"
#include "Documentation/ClientManual.hpp"
#include "Documentation/CountryCodes.hpp"
#include "Failures/ExitStatus.hpp"
#include "Failures/Failure.hpp"
#include "Keychain/KeychainChoice.hpp"
#include "Output/DisplayText.hpp"
#include "Output/ResultStream.hpp"
#include "Terminal/Terminal.hpp"

#include <algorithm>
#include <clocale>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>
#include <unistd.h>

namespace {

using TarnwickClient::Client;
using TarnwickClient::Command;
using TarnwickClient::ExitStatus;
using TarnwickClient::Failure;
using TarnwickClient::Json;
using TarnwickClient::ResultStream;
using TarnwickClient::Settings;

constexpr const char* examplesHelp =
    "Examples:\n"
    "  tarnwick login ada@example.org\n"
    "  tarnwick countries --position 52.52,13.41\n"
    "  tarnwick servers DE --json | jq '.[0]'\n";

void introduceProgram() {
    Tarnwick_API::Platform::Bundle::setMain(
        Tarnwick_API::Platform::Bundle{{{"CFBundleName", "tarnwick"},
                                        {"CFBundleExecutable", "tarnwick"},
                                        {"CFBundleIdentifier", "example.tarnwick.client"},
                                        {"CFBundleVersion", TarnwickClient::clientVersion},
                                        {"CFBundleShortVersionString", TarnwickClient::clientVersion}}});
}

void openDebugChannel(bool hidesSecrets) {
    using Tarnwick_API::Platform::Logging;
    Logging::setSink([](const Logging::Entry& entry) { std::cerr << "[debug] " << entry.message << '\n'; },
                     hidesSecrets ? Logging::Secrets::hidden : Logging::Secrets::shown);
}

std::string document(const Json& json) {
    constexpr int indentation = 2;
    return json.dump(indentation, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string document(const Failure& failure) {
    Json error{
        {"kind", failure.kind()}, {"message", failure.what()}, {"exitStatus", static_cast<int>(failure.status())}};
    if (!failure.serviceText().empty()) {
        error["serviceText"] = failure.serviceText();
    }
    return document(Json{{"error", std::move(error)}});
}

int report(const Failure& failure) {
    std::cerr << "tarnwick: " << TarnwickClient::printable(failure.what()) << '\n';
    if (!failure.serviceText().empty()) {
        std::cerr << "The service says: " << TarnwickClient::printable(failure.serviceText()) << '\n';
    }
    return static_cast<int>(failure.status());
}

TarnwickClient::Result resultOf(const Settings& settings, const Command& command) {
    if (settings.verbose) {
        openDebugChannel(settings.hideSecrets);
    }
    TarnwickClient::installKeychain(settings);
    if (command.runLocally) {
        return command.runLocally(settings);
    }
    TarnwickClient::requireServiceSettings(settings, command.filter ? command.filter() : std::nullopt);
    Client client{settings};
    auto result = command.run(client);
    if (!settings.cacheFolder.empty()) {
        std::cerr << TarnwickClient::sourcesText(client.transfers()) << '\n';
    }
    return result;
}

int runCommand(const Settings& settings, const Command& command) {
    const ResultStream results{settings.verbose};
    try {
        const auto result = resultOf(settings, command);
        results.write(settings.json ? document(result.json)
                                    : result.text(TarnwickClient::terminalWidth(results.descriptor())));
        return static_cast<int>(result.status);
    } catch (const Failure& failure) {
        const auto status = report(failure);
        if (settings.json && failure.kind() != "output") {
            results.write(document(failure));
        }
        return status;
    }
}

int reportUse(const CLI::App& app, const std::string& message, bool isJson) {
    const auto failure = Failure::usage(message);
    const auto status = report(failure);
    std::cerr << CommandLine::helpHint(app) << '\n';
    if (isJson) {
        std::cout << document(failure);
    }
    return status;
}

/// Lines that are longer are hard to read, also where there is room.
std::size_t helpWidth() {
    constexpr std::size_t usual = 80;
    constexpr std::size_t widest = 100;
    return std::min(TarnwickClient::terminalWidth(STDOUT_FILENO).value_or(usual), widest);
}

int runProgram(int argc, char** argv) {
    introduceProgram();
    Settings settings;
    std::vector<Command> commands;
    CLI::App app{"Client of the Tarnwick VPN service", "tarnwick"};
    app.fallthrough();
    app.require_subcommand(1);
    CommandLine::addDocumentationOptions(app, TarnwickClient::clientManual());
    const auto file = TarnwickClient::addSettings(app, settings);
    TarnwickClient::addSessionCommands(app, commands);
    TarnwickClient::addAccountCommands(app, commands);
    TarnwickClient::addCatalogueCommands(app, commands);
    TarnwickClient::addKeychainCommands(app, commands);
    CommandLine::addHelpCommand(app);
    app.footer(std::string{examplesHelp} + TarnwickClient::settingsHelp + "\n" + TarnwickClient::exitStatusHelp);
    if (const auto words = CommandLine::wordsToComplete(argc, argv)) {
        ResultStream{}.write(CommandLine::completions(app, *words, {{"CODE", &TarnwickClient::countryCodes}}));
        return static_cast<int>(ExitStatus::ok);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Parsing may have ended before it came to the option.
        const auto isJson = settings.json || std::find(argv, argv + argc, std::string_view{"--json"}) != argv + argc;
        if (const auto text = CommandLine::shownText(app, error, helpWidth())) {
            ResultStream{}.write(*text);
            return static_cast<int>(ExitStatus::ok);
        }
        return reportUse(app, file->located(CommandLine::usageMessage(app, error)), isJson);
    }
    if (!file->mistake().empty()) {
        return reportUse(app, file->mistake(), settings.json);
    }
    const auto command =
        std::find_if(commands.begin(), commands.end(), [](const Command& each) { return each.app->parsed(); });
    return runCommand(settings, *command);
}

}  // namespace

int main(int argc, char** argv) {
    // Tables are UTF-8 whatever the terminal; names are sorted as the user's language has it.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    std::setlocale(LC_COLLATE, "");
    try {
        return runProgram(argc, argv);
    } catch (const Failure& failure) {
        return report(failure);
    } catch (const std::exception& error) {
        std::cerr << "tarnwick: " << error.what() << '\n';
        return static_cast<int>(ExitStatus::local);
    }
}
