#include "Configuration/Settings.hpp"

#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include "CommandLine/WordChoice.hpp"
#include "Configuration/ConfigurationFile.hpp"
#include "Configuration/UserFolders.hpp"
#include "Configuration/ValueChecks.hpp"
#include "Failures/Failure.hpp"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

using Tarnwick_API::ApiEnvironment;
using Tarnwick_API::ApiVersion;

namespace {

constexpr std::array<const char*, 4> environmentNames{"dev", "live", "beta", "staging"};

constexpr std::array<const char*, filterCount> filterNames{
    "smart-servers-candidates",
    "general-countries-all",
    "general-servers-candidates-per-country",
    "general-servers-per-country",
    "downloading-countries-all",
    "downloading-servers-candidates-per-country",
    "streaming-countries-all",
    "streaming-servers-candidates-per-country",
    "default-favorites",
};

/// "consumer-key" is "TARNWICK_CONSUMER_KEY" in the environment.
std::string variableName(std::string_view setting) {
    std::string variable = "TARNWICK_";
    std::transform(setting.begin(), setting.end(), std::back_inserter(variable), [](unsigned char character) {
        return character == '-' ? '_' : static_cast<char>(std::toupper(character));
    });
    return variable;
}

template <typename Value>
CLI::Option* add(CLI::App& app, const std::string& setting, Value& value, const std::string& description) {
    return app.add_option("--" + setting, value, description)->envname(variableName(setting));
}

void addFlag(CLI::App& app, const std::string& names, const std::string& setting, bool& value,
             const std::string& description) {
    app.add_flag(names, value, description)->envname(variableName(setting));
}

void addServiceSettings(CLI::App& app, Settings& settings) {
    const std::string group = "Service";
    std::vector<std::pair<std::string, ApiEnvironment>> environments;
    for (std::size_t index = 0; index < environmentNames.size(); ++index) {
        environments.emplace_back(environmentNames[index], static_cast<ApiEnvironment>(index));
    }
    add(app, "environment", settings.environment, "Which installation of the service: dev, live, beta, staging [live]")
        ->transform(CommandLine::choice(std::move(environments)))
        ->option_text("NAME")
        ->group(group);
    for (std::size_t index = 0; index < environmentNames.size(); ++index) {
        const std::string environment = environmentNames[index];
        add(app, "host-" + environment, settings.hosts[index], "Host of " + environment + ", with :PORT if need be")
            ->option_text("HOST")
            ->group(group);
    }
    add(app, "api-version", settings.apiVersion, "Generation of the API: v1; v2 is an early stub that never answers")
        ->transform(CommandLine::choice<ApiVersion>({{"v1", ApiVersion::v1}, {"v2", ApiVersion::v2}}))
        ->option_text("VERSION")
        ->group(group);
    add(app, "consumer-key", settings.consumerKey, "The application's key at the service")
        ->option_text("TEXT")
        ->group(group);
    add(app, "consumer-secret", settings.consumerSecret,
        "The application's secret; better in the file or the environment, where other users can't read it")
        ->option_text("TEXT")
        ->group(group);
    add(app, "partner-id", settings.partnerId, "The application's partner number")
        ->check(wholeNumber())
        ->option_text("NUMBER")
        ->group(group);
    add(app, "cid", settings.clickId, "Click id to send with every request")->option_text("TEXT")->group(group);
    for (std::size_t index = 0; index < filterCount; ++index) {
        add(app, std::string{"filter-"} + filterNames[index], settings.filters[index], "")
            ->check(wholeNumber())
            ->option_text("NUMBER")
            ->group("Numbers of the service's filters (for countries, servers, candidates and favorites)");
    }
}

void addConnectionSettings(CLI::App& app, Settings& settings) {
    const std::string group = "Connection";
    app.add_flag("--fallback,!--no-fallback", settings.fallback, "Go to the fixed address instead of the host's name")
        ->envname(variableName("fallback"))
        ->group(group);
    add(app, "ca-file", settings.caFile, "Trust the PEM certificates in this file in place of the system's")
        ->transform(userPath())
        ->check(CLI::ExistingFile)
        ->option_text("FILE")
        ->group(group);
    add(app, "connect-to", settings.connectTo,
        "Lead connections elsewhere: HOST:PORT:OTHER-HOST:OTHER-PORT; repeatable")
        ->option_text("RULE")
        ->allow_extra_args(false)
        ->group(group);
    add(app, "idle-timeout", settings.idleTimeout, "Seconds without any data that end one try [60]")
        ->check(numberBetween(0.001, 86400))
        ->option_text("SECONDS")
        ->group(group);
    add(app, "timeout", settings.timeout, "Seconds that a command may take in all, retries included [120]")
        ->check(numberBetween(0.001, 86400))
        ->option_text("SECONDS")
        ->group(group);
}

void addLocalSettings(CLI::App& app, Settings& settings) {
    const std::string group = "This computer";
    add(app, "installation-id", settings.installationId, "UUID of this installation [made once and kept]")
        ->option_text("UUID")
        ->group(group);
    add(app, "keychain-service", settings.keychainService, "Name under which the keychain keeps the token [tarnwick]")
        ->option_text("NAME")
        ->group(group);
    add(app, "keychain", settings.keychain,
        "Who keeps the token: system (the desktop's keyring), file (a private file) or auto, the first that works "
        "[auto]")
        ->transform(CommandLine::choice<KeychainKind>(
            {{"auto", KeychainKind::automatic}, {"system", KeychainKind::system}, {"file", KeychainKind::file}}))
        ->option_text("KIND")
        ->group(group);
    add(app, "keychain-file", settings.keychainFile, "Keep the keychain in this file; implies the kind file")
        ->transform(userPath())
        ->option_text("FILE")
        ->group(group);
    add(app, "cache", settings.cacheFolder,
        "Keep answers in this folder, for 10 minutes at most, as the service allows")
        ->transform(userPath())
        ->option_text("DIR")
        ->group(group);
}

}  // namespace

std::shared_ptr<const ConfigurationFile> addSettings(CLI::App& app, Settings& settings) {
    // The parser reads the file before it looks at the environment.
    const auto* chosen = std::getenv("TARNWICK_CONFIG");
    const auto isChosen = chosen != nullptr && *chosen != '\0';
    const auto folder = configurationFolder();
    const auto standard = folder.empty() ? std::string{} : (folder / "config.toml").string();
    app.set_config("--config", isChosen ? chosen : standard,
                   "Read settings from this file, one name = value a line, or from the one that TARNWICK_CONFIG names "
                   "[~/.config/tarnwick/config.toml]",
                   isChosen)
        ->transform(userPath())
        ->option_text("FILE");
    const auto file = std::make_shared<ConfigurationFile>(app);
    app.config_formatter(file);
    addFlag(app, "--json", "json", settings.json, "Print one JSON document for programs, errors too");
    addFlag(app, "-v,--verbose", "verbose", settings.verbose,
            "Print requests and answers to standard error; they hold the token and the consumer secret");
    addFlag(
        app, "--hide-secrets", "hide-secrets", settings.hideSecrets,
        "With --verbose, leave out secrets, and names and addresses of the user, so that it may be shown to others");
    addServiceSettings(app, settings);
    addConnectionSettings(app, settings);
    addLocalSettings(app, settings);
    return file;
}

namespace {

std::vector<std::string> missingSettings(const Settings& settings, std::optional<Filter> filter) {
    std::vector<std::string> missing;
    const auto require = [&](bool isThere, const std::string& setting) {
        if (!isThere) {
            missing.push_back(setting);
        }
    };
    const auto environment = static_cast<std::size_t>(settings.environment);
    require(!settings.hosts[environment].empty(), std::string{"host-"} + environmentNames[environment]);
    require(!settings.consumerKey.empty(), "consumer-key");
    require(!settings.consumerSecret.empty(), "consumer-secret");
    require(settings.partnerId.has_value(), "partner-id");
    if (filter) {
        const auto index = static_cast<std::size_t>(*filter);
        require(settings.filters[index].has_value(), std::string{"filter-"} + filterNames[index]);
    }
    return missing;
}

}  // namespace

void requireServiceSettings(const Settings& settings, std::optional<Filter> filter) {
    if (settings.apiVersion == ApiVersion::v2) {
        throw Failure::usage("Version 2 of the API is an early stub that never answers; use api-version v1.");
    }
    if (const auto missing = missingSettings(settings, filter); !missing.empty()) {
        std::string names;
        for (const auto& setting : missing) {
            names += (names.empty() ? "" : ", ") + setting;
        }
        throw Failure::usage((missing.size() == 1 ? "This setting is missing: " : "These settings are missing: ") +
                             names + ". Give --" + missing.front() + ", set " + variableName(missing.front()) +
                             " or write it into the configuration file" + (missing.size() == 1 ? "." : ", and so on."));
    }
    const auto& host = settings.hosts[static_cast<std::size_t>(settings.environment)];
    if (host.find_first_of("/?#@ \t") != std::string::npos) {
        throw Failure::usage("A host is given without scheme and path, such as \"api.tarnwick.example\": " + host);
    }
    if (!settings.installationId.empty() && !Tarnwick_API::Platform::Uuid::fromString(settings.installationId)) {
        throw Failure::usage("The installation id is no UUID: " + settings.installationId);
    }
}

const char* name(ApiEnvironment environment) noexcept {
    return environmentNames[static_cast<std::size_t>(environment)];
}

}  // namespace TarnwickClient
