#include "Client/Client.hpp"
#include "Commands/Command.hpp"
#include "Output/RecordJson.hpp"
#include "Output/Table.hpp"
#include "Terminal/Credentials.hpp"

#include <CLI/CLI.hpp>

namespace TarnwickClient {

using Tarnwick_API::Completion;
using Tarnwick_API::User;
using Tarnwick_API::UserField;

namespace {

std::string yesOrNo(bool value) {
    return value ? "yes" : "no";
}

Result userResult(const User& user) {
    Table table{{{""}, {""}}};
    table.addRow({"User name", user.username});
    table.addRow({"E-mail", user.email.value_or("-")});
    table.addRow({"Active", yesOrNo(user.active)});
    table.addRow({"Id", std::to_string(user.id)});
    if (user.location) {
        table.addRow({"Seen at", user.location->ip + ", " + user.location->city.value_or("") +
                                     (user.location->city ? ", " : "") + user.location->country});
    }
    return {toJson(user), [table](auto width) { return table.render(width); }};
}

void addWhoami(CLI::App& app, std::vector<Command>& commands) {
    auto* command = app.add_subcommand("whoami", "Show the signed-in account, as the service has it now");
    addNotes(*command, {"tarnwick whoami", "tarnwick whoami --json | jq --raw-output .email"}, userShape);
    commands.push_back({command, [](Client& client) {
                            client.requireSignIn();
                            return userResult(
                                client.ask<User>("Reading the account", [&](Completion<User> onCompletion) {
                                    client.api().getCurrentUser(std::move(onCompletion));
                                }));
                        }});
}

void addCreateUser(CLI::App& app, std::vector<Command>& commands) {
    struct Arguments {
        std::string username;
        bool passwordFromInput = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("create-user", "Create an account; does not sign in");
    command
        ->add_option("user", arguments->username,
                     "User name, an e-mail address, otherwise from TARNWICK_USERNAME, or asked for")
        ->envname("TARNWICK_USERNAME");
    command->add_flag("--password-stdin", arguments->passwordFromInput,
                      "Read the password from standard input; else from TARNWICK_PASSWORD, or the terminal");
    addNotes(*command, {"tarnwick create-user grace@example.org"}, "{created}");
    commands.push_back({command, [arguments](Client& client) {
                            const auto username = readUsername(arguments->username);
                            const auto password =
                                readPassword({.fromStandardInput = arguments->passwordFromInput, .isNew = true});
                            client.run("Creating the account", [&](Completion<void> onCompletion) {
                                client.api().createUser(username, password, std::move(onCompletion));
                            });
                            return sentence({{"created", username}}, "Created the account " + username + ".");
                        }});
}

void addUpdateUser(CLI::App& app, std::vector<Command>& commands) {
    struct Arguments {
        std::string username;
        std::string email;
        bool password = false;
        bool passwordFromInput = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("update-user", "Change one part of the signed-in account");
    auto* fields = command->add_option_group("One of");
    auto* username = fields->add_option("--username", arguments->username, "The new user name")->option_text("TEXT");
    fields->add_option("--email", arguments->email, "The new e-mail address")->option_text("TEXT");
    auto* password = fields->add_flag(
        "--password", arguments->password,
        "A new password, from TARNWICK_NEW_PASSWORD, --password-stdin or the terminal, never the command line");
    fields->require_option(1);
    command->add_flag("--password-stdin", arguments->passwordFromInput, "Read the new password from standard input")
        ->needs(password);
    addNotes(*command, {"tarnwick update-user --email ada@lovelace.example", "tarnwick update-user --password"},
             "{updated}");
    commands.push_back({command, [arguments, username](Client& client) {
                            client.requireSignIn();
                            auto field = UserField::email;
                            auto value = arguments->email;
                            const char* name = "email";
                            const char* what = "e-mail address";
                            if (arguments->password) {
                                field = UserField::password;
                                name = what = "password";
                                value = readPassword({.variable = "TARNWICK_NEW_PASSWORD",
                                                      .fromStandardInput = arguments->passwordFromInput,
                                                      .question = "New password: ",
                                                      .isNew = true});
                            } else if (username->count() > 0) {
                                field = UserField::username;
                                name = "username";
                                what = "user name";
                                value = arguments->username;
                            }
                            client.run("Changing the account", [&](Completion<void> onCompletion) {
                                client.api().updateUser(field, value, std::move(onCompletion));
                            });
                            return sentence({{"updated", name}}, std::string{"Changed the "} + what + ".");
                        }});
}

void addAuthToken(CLI::App& app, std::vector<Command>& commands) {
    auto* command = app.add_subcommand("auth-token", "Print the user's authentication token");
    addNotes(*command, {"tarnwick auth-token"}, "{authToken}");
    commands.push_back({command, [](Client& client) {
                            client.requireSignIn();
                            const auto token = client.ask<std::string>(
                                "Reading the authentication token", [&](Completion<std::string> onCompletion) {
                                    client.api().getAuthToken(std::move(onCompletion));
                                });
                            return sentence({{"authToken", token}}, token);
                        }});
}

}  // namespace

void addAccountCommands(CLI::App& app, std::vector<Command>& commands) {
    addCreateUser(app, commands);
    addWhoami(app, commands);
    addUpdateUser(app, commands);
    addAuthToken(app, commands);
}

}  // namespace TarnwickClient
