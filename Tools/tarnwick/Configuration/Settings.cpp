#include "Configuration/Settings.hpp"

#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include "Configuration/ConfigurationFile.hpp"
#include "Configuration/UserFolders.hpp"
#include "Failures/Failure.hpp"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <string_view>

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

[[noreturn]] void failMissing(const std::string& setting) {
    throw Failure::usage("The setting " + setting + " is missing: give --" + setting + ", set " +
                         variableName(setting) + " or write it into the configuration file.");
}

void addServiceSettings(CLI::App& app, Settings& settings) {
    const std::string group = "Service";
    std::map<std::string, ApiEnvironment> environments;
    for (std::size_t index = 0; index < environmentNames.size(); ++index) {
        environments.emplace(environmentNames[index], static_cast<ApiEnvironment>(index));
    }
    const std::map<std::string, ApiVersion> versions{{"v1", ApiVersion::v1}, {"v2", ApiVersion::v2}};
    add(app, "environment", settings.environment, "Which installation of the service: dev, live, beta, staging [live]")
        ->transform(CLI::Transformer(environments).description(""))
        ->option_text("NAME")
        ->group(group);
    for (std::size_t index = 0; index < environmentNames.size(); ++index) {
        const std::string environment = environmentNames[index];
        add(app, "host-" + environment, settings.hosts[index], "Host of " + environment + ", with :PORT if need be")
            ->option_text("HOST")
            ->group(group);
    }
    add(app, "api-version", settings.apiVersion, "Generation of the API: v1; v2 is an early stub that never answers")
        ->transform(CLI::Transformer(versions).description(""))
        ->option_text("VERSION")
        ->group(group);
    add(app, "consumer-key", settings.consumerKey, "The application's key at the service")
        ->option_text("TEXT")
        ->group(group);
    add(app, "consumer-secret", settings.consumerSecret,
        "The application's secret; better in the file or the environment, where other users can't read it")
        ->option_text("TEXT")
        ->group(group);
    add(app, "partner-id", settings.partnerId, "The application's partner number")->option_text("NUMBER")->group(group);
    add(app, "cid", settings.clickId, "Click id to send with every request")->option_text("TEXT")->group(group);
    for (std::size_t index = 0; index < filterCount; ++index) {
        add(app, std::string{"filter-"} + filterNames[index], settings.filters[index], "")
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
        ->check(CLI::ExistingFile)
        ->option_text("FILE")
        ->group(group);
    add(app, "connect-to", settings.connectTo,
        "Lead connections elsewhere: HOST:PORT:OTHER-HOST:OTHER-PORT; repeatable")
        ->option_text("RULE")
        ->allow_extra_args(false)
        ->group(group);
    add(app, "idle-timeout", settings.idleTimeout, "Seconds without any data that end one try [60]")
        ->check(CLI::Range(0.001, 86400.0).description(""))
        ->option_text("SECONDS")
        ->group(group);
    add(app, "timeout", settings.timeout, "Seconds that a command may take in all, retries included [120]")
        ->check(CLI::Range(0.001, 86400.0).description(""))
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
    const std::map<std::string, KeychainKind> kinds{
        {"auto", KeychainKind::automatic}, {"system", KeychainKind::system}, {"file", KeychainKind::file}};
    add(app, "keychain", settings.keychain,
        "Who keeps the token: system (the desktop's keyring), file (a private file) or auto, the first that works "
        "[auto]")
        ->transform(CLI::Transformer(kinds).description(""))
        ->option_text("KIND")
        ->group(group);
    add(app, "keychain-file", settings.keychainFile, "Keep the keychain in this file; implies the kind file")
        ->option_text("FILE")
        ->group(group);
    add(app, "cache", settings.cacheFolder,
        "Keep answers in this folder, for 10 minutes at most, as the service allows")
        ->option_text("DIR")
        ->group(group);
}

}  // namespace

void addSettings(CLI::App& app, Settings& settings) {
    // The parser reads the file before it looks at the environment.
    const auto* chosen = std::getenv("TARNWICK_CONFIG");
    const auto isChosen = chosen != nullptr && *chosen != '\0';
    const auto folder = configurationFolder();
    const auto standard = folder.empty() ? std::string{} : (folder / "config.toml").string();
    app.set_config("--config", isChosen ? chosen : standard,
                   "Read settings from this file, one name = value a line [~/.config/tarnwick/config.toml]", isChosen)
        ->option_text("FILE (Env:TARNWICK_CONFIG)");
    app.config_formatter(std::make_shared<ConfigurationFile>(app));
    app.allow_config_extras(CLI::config_extras_mode::error);
    addFlag(app, "--json", "json", settings.json, "Print one JSON document for programs, errors too");
    addFlag(app, "-v,--verbose", "verbose", settings.verbose,
            "Print requests and answers to standard error; they hold the token and the consumer secret");
    addServiceSettings(app, settings);
    addConnectionSettings(app, settings);
    addLocalSettings(app, settings);
}

void requireServiceSettings(const Settings& settings) {
    if (settings.apiVersion == ApiVersion::v2) {
        throw Failure::usage("Version 2 of the API is an early stub that never answers; use api-version v1.");
    }
    if (settings.consumerKey.empty()) {
        failMissing("consumer-key");
    }
    if (settings.consumerSecret.empty()) {
        failMissing("consumer-secret");
    }
    if (!settings.partnerId) {
        failMissing("partner-id");
    }
    const auto& host = settings.hosts[static_cast<std::size_t>(settings.environment)];
    if (host.empty()) {
        failMissing(std::string{"host-"} + name(settings.environment));
    }
    if (host.find_first_of("/?#@ \t") != std::string::npos) {
        throw Failure::usage("A host is given without scheme and path, such as \"api.tarnwick.example\": " + host);
    }
    if (!settings.installationId.empty() && !Tarnwick_API::Platform::Uuid::fromString(settings.installationId)) {
        throw Failure::usage("The installation id is no UUID: " + settings.installationId);
    }
}

void requireFilter(const Settings& settings, Filter filter) {
    const auto index = static_cast<std::size_t>(filter);
    if (!settings.filters[index]) {
        failMissing(std::string{"filter-"} + filterNames[index]);
    }
}

const char* name(ApiEnvironment environment) noexcept {
    return environmentNames[static_cast<std::size_t>(environment)];
}

}  // namespace TarnwickClient
