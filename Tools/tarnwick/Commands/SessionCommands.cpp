#include "Client/Client.hpp"
#include "Commands/Command.hpp"
#include "Output/DisplayText.hpp"
#include "Output/NumberText.hpp"
#include "Output/RecordJson.hpp"
#include "Output/Table.hpp"
#include "Terminal/Credentials.hpp"

#include <cmath>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

using Tarnwick_API::Completion;
using Tarnwick_API::Device;
using Tarnwick_API::Status;
using Tarnwick_API::User;

Result sentence(Json json, const std::string& text) {
    return {std::move(json), [line = printable(text) + "\n"](auto /*width*/) { return line; }};
}

void addNotes(CLI::App& command, std::initializer_list<const char*> examples, const std::string& json) {
    std::string notes = "Examples:\n";
    for (const auto* const example : examples) {
        notes.append("  ").append(example).append("\n");
    }
    command.footer(notes + "With --json:\n" + json + "\n");
}

namespace {

void addStatus(CLI::App& app, std::vector<Command>& commands) {
    auto* command = app.add_subcommand("status", "Show what the service sees of this computer and expects of clients");
    addNotes(*command, {"tarnwick status", "tarnwick status --json | jq --raw-output .ip"},
             "{ip, minimumClientVersion, updateIntervalSeconds, apiVersion, location: {ip, country, countryCode, city, "
             "latitude, longitude}}");
    commands.push_back(
        {command, [](Client& client) {
             const auto status = client.ask<Status>("Reading the status", [&](Completion<Status> onCompletion) {
                 client.api().getStatus(std::move(onCompletion));
             });
             Table table{{{""}, {""}}};
             table.addRow({"Environment",
                           std::string{name(client.settings().environment)} + " (" + client.api().apiHost() + ")"});
             table.addRow({"Your address", status.ip});
             if (const auto& location = status.location) {
                 table.addRow(
                     {"Your place", location->city.value_or("") + (location->city ? ", " : "") + location->country});
             }
             table.addRow({"Oldest client served", versionText(status.minVersion.mac)});
             table.addRow({"Next look in", wholeNumberText(std::trunc(status.statusUpdateInterval)) + " s"});
             table.addRow({"Service version", status.apiVersion.value_or("-")});
             return Result{toJson(status), [table](auto width) { return table.render(width); }};
         }});
}

void addLogin(CLI::App& app, std::vector<Command>& commands) {
    struct Arguments {
        std::string username;
        bool passwordFromInput = false;
        bool import = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("login", "Sign in and keep the access token in the keychain");
    command->add_option("user", arguments->username, "User name, otherwise from TARNWICK_USERNAME, or asked for")
        ->envname("TARNWICK_USERNAME");
    command->add_flag("--password-stdin", arguments->passwordFromInput,
                      "Read the password from standard input; else from TARNWICK_PASSWORD, or the terminal");
    command->add_flag("--import", arguments->import, "Take over an account of the legacy system");
    addNotes(*command,
             {"tarnwick login ada@example.org", "tarnwick login ada@example.org --password-stdin < password.txt"},
             userShape);
    commands.push_back({command, [arguments](Client& client) {
                            const auto username = readUsername(arguments->username);
                            const auto password = readPassword({.fromStandardInput = arguments->passwordFromInput});
                            const auto user = client.ask<User>("Signing in", [&](Completion<User> onCompletion) {
                                client.api().login(username, password, arguments->import, std::move(onCompletion));
                            });
                            client.requireKept();
                            return sentence(toJson(user), "Signed in as " + user.username + ".");
                        }});
}

void addLogout(CLI::App& app, std::vector<Command>& commands) {
    auto* command = app.add_subcommand("logout", "Sign out and wipe the access token");
    addNotes(*command, {"tarnwick logout"}, "{signedOut}");
    commands.push_back({command, [](Client& client) {
                            client.requireSignIn();
                            const auto error = client.error("Signing out", [&](Completion<void> onCompletion) {
                                client.api().logout(std::move(onCompletion));
                            });
                            if (error && isSessionEnded(*error)) {
                                client.forgetStoredToken();
                                return sentence({{"signedOut", true}}, "The session had ended already.");
                            }
                            if (error) {
                                throw client.failure(*error);
                            }
                            client.requireWiped();
                            return sentence({{"signedOut", true}}, "Signed out.");
                        }});
}

void addDevices(CLI::App& app, std::vector<Command>& commands) {
    auto* command = app.add_subcommand("devices", "List where the account is signed in; * marks this sign-in");
    addNotes(*command, {"tarnwick devices", "tarnwick devices --json | jq '.[] | select(.current) | .deviceName'"},
             "[{id, deviceName, application, type, created, current}]");
    commands.push_back(
        {command, [](Client& client) {
             client.requireSignIn();
             auto devices = client.ask<std::vector<Device>>("Reading the devices",
                                                            [&](Completion<std::vector<Device>> onCompletion) {
                                                                client.api().getDevices(std::move(onCompletion));
                                                            });
             const auto own = client.api().username();
             Table table{{{"ID", Table::Alignment::right}, {""}, {"DEVICE"}, {"APPLICATION"}, {"TYPE"}, {"SIGNED IN"}}};
             Json json = Json::array();
             for (const auto& device : devices) {
                 auto entry = toJson(device);
                 entry["current"] = device.token == own;
                 json.push_back(std::move(entry));
                 table.addRow({std::to_string(device.id), device.token == own ? "*" : "",
                               device.deviceName.value_or("-"), device.name.value_or("-"), name(device.type),
                               device.created ? timeText(*device.created) : "-"});
             }
             return Result{std::move(json), [table](auto width) {
                               return table.empty() ? std::string{"No devices.\n"} : table.render(width);
                           }};
         }});
}

}  // namespace

void addSessionCommands(CLI::App& app, std::vector<Command>& commands) {
    addStatus(app, commands);
    addLogin(app, commands);
    addLogout(app, commands);
    addDevices(app, commands);
}

}  // namespace TarnwickClient
