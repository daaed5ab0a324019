#include <Tarnwick_API/Facade/ServerProfile.hpp>

#include "Client/Client.hpp"
#include "CommandLine/WordChoice.hpp"
#include "Commands/Command.hpp"
#include "Configuration/ValueChecks.hpp"
#include "Output/LocationTables.hpp"

#include <algorithm>
#include <cctype>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

using Tarnwick_API::Completion;
using Tarnwick_API::Country;
using Tarnwick_API::FavoriteEntry;
using Tarnwick_API::Server;
using Tarnwick_API::ServerProfile;

namespace {

struct Arguments {
    ServerProfile profile = ServerProfile::general;
    std::string country;
    std::optional<std::int64_t> service;
    std::vector<double> position;
    std::int64_t id = 0;

    [[nodiscard]] std::optional<double> latitude() const {
        return position.empty() ? std::nullopt : std::optional{position.at(0)};
    }
    [[nodiscard]] std::optional<double> longitude() const {
        return position.empty() ? std::nullopt : std::optional{position.at(1)};
    }
};

void addProfile(CLI::App& command, Arguments& arguments) {
    command.add_option("--profile", arguments.profile, "What for: general, downloading or streaming [general]")
        ->transform(CommandLine::choice<ServerProfile>({{"general", ServerProfile::general},
                                                        {"downloading", ServerProfile::downloading},
                                                        {"streaming", ServerProfile::streaming}}))
        ->option_text("NAME");
}

void addPosition(CLI::App& command, Arguments& arguments) {
    command.add_option("--position", arguments.position, "Your place in degrees, for the distances")
        ->delimiter(',')
        ->expected(2)
        ->check(numberBetween(-180, 180))
        ->option_text("LATITUDE,LONGITUDE");
}

std::string checkCountry(const std::string& text) {
    const auto isCode = text.size() == 2 && std::all_of(text.begin(), text.end(), [](unsigned char character) {
                            return character < 0x80 && std::isalpha(character) != 0;
                        });
    return isCode ? std::string{} : "a country is given by its two letters, such as DE, not " + text;
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
    return text;
}

Filter countriesFilter(ServerProfile profile) {
    switch (profile) {
        case ServerProfile::downloading:
            return Filter::downloadingCountriesAll;
        case ServerProfile::streaming:
            return Filter::streamingCountriesAll;
        case ServerProfile::general:
            break;
    }
    return Filter::generalCountriesAll;
}

Filter candidatesFilter(ServerProfile profile, bool hasCountry) {
    switch (profile) {
        case ServerProfile::downloading:
            return Filter::downloadingServersCandidatesPerCountry;
        case ServerProfile::streaming:
            return Filter::streamingServersCandidatesPerCountry;
        case ServerProfile::general:
            break;
    }
    return hasCountry ? Filter::generalServersCandidatesPerCountry : Filter::smartServersCandidates;
}

void addCountries(CLI::App& app, std::vector<Command>& commands) {
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("countries", "List the countries that one can connect to");
    addProfile(*command, *arguments);
    addPosition(*command, *arguments);
    addNotes(*command,
             {"tarnwick countries", "tarnwick countries --position 52.52,13.41",
              "tarnwick countries --profile streaming --json | jq '.[] | select(.full | not) | .countryCode'"},
             "[{countryCode, country, full, currentUsers, maxUsers, distance, serviceId, serviceName, type}]");
    commands.push_back({command,
                        [arguments](Client& client) {
                            client.adoptStoredToken();
                            return countriesResult(client.ask<std::vector<Country>>(
                                "Reading the countries", [&](Completion<std::vector<Country>> onCompletion) {
                                    client.api().getCountries(arguments->profile, arguments->latitude(),
                                                              arguments->longitude(), std::move(onCompletion));
                                }));
                        },
                        [arguments] { return countriesFilter(arguments->profile); }});
}

void addServers(CLI::App& app, std::vector<Command>& commands) {
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("servers", "List the servers of one country");
    command->add_option("country", arguments->country, "Code of the country, such as DE")
        ->option_text("CODE")
        ->required()
        ->check(checkCountry);
    addPosition(*command, *arguments);
    addNotes(*command, {"tarnwick servers DE", "tarnwick servers DE --json | jq --raw-output '.[0].ip'"}, serversShape);
    commands.push_back({command,
                        [arguments](Client& client) {
                            client.adoptStoredToken();
                            return serversResult(client.ask<std::vector<Server>>(
                                "Reading the servers", [&](Completion<std::vector<Server>> onCompletion) {
                                    client.api().getServers(upperCase(arguments->country), arguments->latitude(),
                                                            arguments->longitude(), std::move(onCompletion));
                                }));
                        },
                        [] { return Filter::generalServersPerCountry; }});
}

void addCandidates(CLI::App& app, std::vector<Command>& commands) {
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("candidates", "List the servers that the service proposes");
    auto* country = command->add_option("--country", arguments->country, "Only in this country")
                        ->check(checkCountry)
                        ->option_text("CODE");
    command->add_option("--service", arguments->service, "Only servers that reach this content service")
        ->check(wholeNumber())
        ->option_text("ID")
        ->needs(country);
    addProfile(*command, *arguments);
    addNotes(*command, {"tarnwick candidates --country DE", "tarnwick candidates --country DE --profile streaming"},
             serversShape);
    commands.push_back({command,
                        [arguments](Client& client) {
                            const auto hasCountry = !arguments->country.empty();
                            client.adoptStoredToken();
                            return serversResult(client.ask<std::vector<Server>>(
                                "Reading the servers", [&](Completion<std::vector<Server>> onCompletion) {
                                    client.api().getCandidateServers(
                                        hasCountry ? std::optional{upperCase(arguments->country)} : std::nullopt,
                                        arguments->profile, arguments->service, std::move(onCompletion));
                                }));
                        },
                        [arguments] { return candidatesFilter(arguments->profile, !arguments->country.empty()); }});
}

void addServer(CLI::App& app, std::vector<Command>& commands) {
    const auto arguments = std::make_shared<Arguments>();
    auto* command = app.add_subcommand("server", "Show one server with its configurations");
    command->add_option("id", arguments->id, "The server's number")
        ->option_text("ID")
        ->required()
        ->check(wholeNumber());
    addNotes(*command, {"tarnwick server 1000", "tarnwick server \"$(tarnwick servers DE --json | jq '.[0].id')\""},
             "{id, name, ip, hostname, countryCode, country, city, language, distance, latitude, longitude, "
             "currentUsers, maxUsers, type, configurations: [{id, name, type, dns: [], clientData, port, "
             "portRange}]}");
    commands.push_back({command, [arguments](Client& client) {
                            client.adoptStoredToken();
                            return serverResult(
                                client.ask<Server>("Reading the server", [&](Completion<Server> onCompletion) {
                                    client.api().getServer(arguments->id, std::move(onCompletion));
                                }));
                        }});
}

void addFavorites(CLI::App& app, std::vector<Command>& commands) {
    auto* command = app.add_subcommand("favorites", "List the service's default favourites");
    addNotes(*command, {"tarnwick favorites", "tarnwick favorites --json | jq 'map(select(.country))'"},
             "[{server: as in tarnwick servers} or {country: as in tarnwick countries}]");
    commands.push_back({command,
                        [](Client& client) {
                            client.adoptStoredToken();
                            return favoritesResult(client.ask<std::vector<FavoriteEntry>>(
                                "Reading the favourites", [&](Completion<std::vector<FavoriteEntry>> onCompletion) {
                                    client.api().getDefaultFavorites(std::move(onCompletion));
                                }));
                        },
                        [] { return Filter::defaultFavorites; }});
}

}  // namespace

void addCatalogueCommands(CLI::App& app, std::vector<Command>& commands) {
    addCountries(app, commands);
    addServers(app, commands);
    addCandidates(app, commands);
    addServer(app, commands);
    addFavorites(app, commands);
}

}  // namespace TarnwickClient
