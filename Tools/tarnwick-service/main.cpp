#include "CommandLine/Completion.hpp"
#include "CommandLine/ShownText.hpp"
#include "CommandLine/UsageMessage.hpp"
#include "Service.hpp"
#include "ServiceManual.hpp"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <pthread.h>
#include <unistd.h>

namespace {

using TarnwickService::Account;
using TarnwickService::Configuration;
using TarnwickService::Service;

struct Options {
    Configuration configuration;
    std::vector<std::string> accounts;
    std::vector<std::string> migratingAccounts;
    std::filesystem::path caFile;
    std::filesystem::path readyFile;
    bool lenient = false;
};

void addFilterOptions(CLI::App& app, TarnwickService::FilterIds& filters) {
    struct Filter {
        const char* option;
        std::int64_t& number;
    };
    for (const auto& [option, number] :
         {Filter{"--filter-smart-candidates", filters.smartServersCandidates},
          Filter{"--filter-general-countries", filters.generalCountriesAll},
          Filter{"--filter-general-candidates", filters.generalServersCandidatesPerCountry},
          Filter{"--filter-general-servers", filters.generalServersPerCountry},
          Filter{"--filter-downloading-countries", filters.downloadingCountriesAll},
          Filter{"--filter-downloading-candidates", filters.downloadingServersCandidatesPerCountry},
          Filter{"--filter-streaming-countries", filters.streamingCountriesAll},
          Filter{"--filter-streaming-candidates", filters.streamingServersCandidatesPerCountry},
          Filter{"--filter-default-favorites", filters.defaultFavorites}}) {
        app.add_option(option, number, "Number of this server-side filter")->capture_default_str()->group("Filters");
    }
}

void addOptions(CLI::App& app, Options& options) {
    Configuration& configuration = options.configuration;
    configuration.controlPort = 0;
    app.add_option("--port", configuration.port, "HTTPS port; 0 takes a free one")->capture_default_str();
    app.add_option("--address", configuration.address, "Address to listen on")->capture_default_str();
    app.add_option("--control-port", configuration.controlPort,
                   "Port of the control interface on 127.0.0.1; 0 takes a free one")
        ->capture_default_str();
    app.add_option("--api-host", configuration.apiHost, "Host that requests must name [localhost:PORT]")
        ->option_text("HOST");
    app.add_option("--consumer-key", configuration.consumerKey, "OAuth consumer key")->capture_default_str();
    app.add_option("--consumer-secret", configuration.consumerSecret, "OAuth consumer secret")->capture_default_str();
    app.add_option("--restricted-consumer-key", configuration.restrictedConsumerKey,
                   "A consumer key without rights, same secret")
        ->capture_default_str();
    app.add_option("--partners-id", configuration.partnersId, "Partner number that requests must carry")
        ->capture_default_str();
    app.add_option("--servers", configuration.serverCount, "Servers in the catalogue")
        ->check(CLI::Range(std::size_t{1}, TarnwickService::Catalogue::mostServers))
        ->capture_default_str();
    app.add_option("--account", options.accounts, "An account that exists from the start; repeatable")
        ->option_text("NAME:PASSWORD");
    app.add_option("--migrating-account", options.migratingAccounts, "The same, still to be migrated")
        ->option_text("NAME:PASSWORD");
    app.add_option("--certificate-name", configuration.certificateNames,
                   "Further name or address in the certificate; repeatable")
        ->option_text("NAME");
    app.add_option("--ca-file", options.caFile, "Where to write the CA certificate [a temporary file]")
        ->option_text("FILE");
    app.add_option("--ready-file", options.readyFile, "Where to write the line that tells the ports")
        ->option_text("FILE");
    app.add_option("--caller-address", configuration.callerAddress, "Public address that callers appear to have")
        ->capture_default_str();
    app.add_option("--caller-zone", configuration.callerZone, "Time zone whose city callers appear to be in")
        ->capture_default_str();
    app.add_option("--minimum-version", configuration.minimumClientVersion, "Oldest client that is accepted")
        ->capture_default_str();
    app.add_option("--catalogue-max-age", configuration.catalogueMaxAge,
                   "Seconds for which catalogue answers may be reused")
        ->capture_default_str();
    app.add_option("--status-interval", configuration.statusUpdateInterval, "Seconds between status requests")
        ->capture_default_str();
    app.add_flag("--lenient", options.lenient, "Overlook deviations of form");
    app.add_flag("--record-requests", configuration.recordRequests,
                 "Keep the latest requests for the control interface");
    addFilterOptions(app, configuration.filterIds);
}

void addAccount(Service& service, const std::string& text, bool migrationRequired) {
    const auto colon = text.find(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) {
        throw std::invalid_argument("not NAME:PASSWORD: " + text);
    }
    Account account;
    account.username = text.substr(0, colon);
    account.password = text.substr(colon + 1);
    account.email = account.username;
    account.migrationRequired = migrationRequired;
    if (!service.accounts().create(account)) {
        throw std::invalid_argument("account given twice: " + account.username);
    }
}

// Written under another name first: whoever waits for the file must not find half of it.
void writeFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::path unfinished = path;
    unfinished += ".part";
    std::ofstream file(unfinished, std::ios::binary);
    file << content;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
    std::filesystem::rename(unfinished, path);
}

/// A file that goes when the program ends, unless its place was the user's choice.
class AuthorityFile {
public:
    AuthorityFile(const std::filesystem::path& chosen, const std::string& content)
        : path_(std::filesystem::absolute(chosen.empty() ? std::filesystem::temp_directory_path() /
                                                               ("tarnwick-service-" + std::to_string(getpid()) + ".pem")
                                                         : chosen)),
          temporary_(chosen.empty()) {
        writeFile(path_, content);
    }
    ~AuthorityFile() {
        if (temporary_) {
            std::error_code ignored;
            std::filesystem::remove(path_, ignored);
        }
    }
    AuthorityFile(const AuthorityFile&) = delete;
    AuthorityFile& operator=(const AuthorityFile&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
    bool temporary_;
};

void run(Options options) {
    sigset_t endSignals;
    sigemptyset(&endSignals);
    sigaddset(&endSignals, SIGINT);
    sigaddset(&endSignals, SIGTERM);
    // Before the first thread starts, so that none of them takes the signal instead of the wait below.
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

    options.configuration.strict = !options.lenient;
    Service service(std::move(options.configuration));
    for (const std::string& account : options.accounts) {
        addAccount(service, account, false);
    }
    for (const std::string& account : options.migratingAccounts) {
        addAccount(service, account, true);
    }
    service.start();
    const AuthorityFile authority(options.caFile, service.caCertificatePem());
    const nlohmann::ordered_json ready = {{"port", service.port()},
                                          {"control_port", service.controlPort().value_or(0)},
                                          {"api_host", service.apiHost()},
                                          {"ca_file", authority.path().string()},
                                          {"pid", getpid()}};
    if (!options.readyFile.empty()) {
        writeFile(options.readyFile, ready.dump() + '\n');
    }
    std::cout << ready.dump() << std::endl;

    int received = 0;
    sigwait(&endSignals, &received);
    service.stop();
}

int reportUse(const std::string& message) {
    constexpr int wrongUse = 2;
    std::cerr << "tarnwick-service: " << message << "\nSee tarnwick-service --help\n";
    return wrongUse;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    Options options;
    CLI::App app("Stands in for the VPN service over HTTPS on this machine", "tarnwick-service");
    CommandLine::addDocumentationOptions(app, TarnwickService::serviceManual());
    addOptions(app, options);
    app.footer(TarnwickService::helpNotes);
    if (const auto words = CommandLine::wordsToComplete(argumentCount, arguments)) {
        std::cout << CommandLine::completions(app, *words);
        return EXIT_SUCCESS;
    }
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        constexpr std::size_t usualWidth = 80;
        if (const auto text = CommandLine::shownText(app, error, usualWidth)) {
            std::cout << *text << std::flush;
            return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        return reportUse(CommandLine::usageMessage(app, error));
    }
    try {
        run(std::move(options));
    } catch (const std::invalid_argument& error) {
        return reportUse(error.what());
    } catch (const std::exception& error) {
        std::cerr << "tarnwick-service: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
