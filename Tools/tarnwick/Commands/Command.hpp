#pragma once

#include "Configuration/Settings.hpp"
#include "Failures/ExitStatus.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace CLI {
class App;
}

namespace TarnwickClient {

class Client;

using Json = nlohmann::ordered_json;

/// What a command came to, for programs and for people.
struct Result {
    Json json;
    /// Ends with a line break. Takes the terminal's width, or none.
    std::function<std::string(std::optional<std::size_t> width)> text;
    /// For commands that ask a question; what goes wrong is a `Failure`.
    ExitStatus status = ExitStatus::ok;
};

struct Command {
    CLI::App* app = nullptr;
    std::function<Result(Client&)> run = {};
    /// The filter that `run` needs the number of, if any; asked once the command line has been read.
    std::function<std::optional<Filter>()> filter = {};
    /// Set instead of `run` where the command does without the service and its settings.
    std::function<Result(const Settings&)> runLocally = {};
};

/// A result of one sentence.
[[nodiscard]] Result sentence(Json json, const std::string& text);

void addAccountCommands(CLI::App& app, std::vector<Command>& commands);
void addSessionCommands(CLI::App& app, std::vector<Command>& commands);
void addCatalogueCommands(CLI::App& app, std::vector<Command>& commands);
void addKeychainCommands(CLI::App& app, std::vector<Command>& commands);

}  // namespace TarnwickClient
