#pragma once

#include "Configuration/Settings.hpp"
#include "Failures/ExitStatus.hpp"

#include <cstddef>
#include <functional>
#include <initializer_list>
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

/// Ends the help of a command with `examples` that work, a line each, and with the shape of its JSON document.
void addNotes(CLI::App& command, std::initializer_list<const char*> examples, const std::string& json);

/// The shapes of the documents that several commands print.
inline constexpr const char* userShape =
    "{id, username, email, active, location: {ip, country, countryCode, city, latitude, longitude}}";
inline constexpr const char* serversShape =
    "[{id, name, ip, hostname, countryCode, country, city, language, distance, latitude, longitude, currentUsers, "
    "maxUsers, type, configurations: []}]";

void addAccountCommands(CLI::App& app, std::vector<Command>& commands);
void addSessionCommands(CLI::App& app, std::vector<Command>& commands);
void addCatalogueCommands(CLI::App& app, std::vector<Command>& commands);
void addKeychainCommands(CLI::App& app, std::vector<Command>& commands);

}  // namespace TarnwickClient
