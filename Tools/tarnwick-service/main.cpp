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
        const char* what;
    };
    for (const auto& [option, number, what] :
         {Filter{"--filter-smart-candidates", filters.smartServersCandidates, "proposed servers, wherever they are"},
          Filter{"--filter-general-countries", filters.generalCountriesAll, "all countries"},
          Filter{"--filter-general-candidates", filters.generalServersCandidatesPerCountry,
                 "proposed servers of a country"},
          Filter{"--filter-general-servers", filters.generalServersPerCountry, "all servers of a country"},
          Filter{"--filter-downloading-countries", filters.downloadingCountriesAll, "countries for downloading"},
          Filter{"--filter-downloading-candidates", filters.downloadingServersCandidatesPerCountry,
                 "proposed servers for downloading"},
          Filter{"--filter-streaming-countries", filters.streamingCountriesAll, "countries for streaming"},
          Filter{"--filter-streaming-candidates", filters.streamingServersCandidatesPerCountry,
                 "proposed servers for streaming"},
          Filter{"--filter-default-favorites", filters.defaultFavorites, "default favourites"}}) {
        app.add_option(option, number, what)
            ->type_name("NUMBER")
            ->capture_default_str()
            ->group("Numbers of the server-side filters, which the client must be given too");
    }
}

void addListeningOptions(CLI::App& app, Options& options) {
    constexpr const char* group = "Where it listens, and what it tells about it";
    Configuration& configuration = options.configuration;
    configuration.controlPort = 0;
    app.add_option("--port", configuration.port, "HTTPS port; 0 takes a free one")
        ->type_name("PORT")
        ->capture_default_str()
        ->group(group);
    app.add_option("--address", configuration.address, "Address to listen on")
        ->type_name("ADDRESS")
        ->capture_default_str()
        ->group(group);
    app.add_option("--control-port", configuration.controlPort,
                   "Port of the control interface on 127.0.0.1; without it a free one")
        ->type_name("PORT")
        ->group(group);
    app.add_option("--certificate-name", configuration.certificateNames,
                   "Further name or address in the certificate, besides localhost and the API host")
        ->type_name("NAME")
        ->group(group);
    app.add_option("--ca-file", options.caFile,
                   "Where to write the CA certificate that clients must trust; without it a temporary file")
        ->type_name("FILE")
        ->group(group);
    app.add_option("--ready-file", options.readyFile,
                   "Where to write, when it listens, the line that goes to standard output too")
        ->type_name("FILE")
        ->group(group);
}

void addClientOptions(CLI::App& app, Options& options) {
    constexpr const char* group = "What it expects of its clients";
    Configuration& configuration = options.configuration;
    app.add_option("--account", options.accounts, "Account that exists from the start; can be repeated")
        ->option_text("NAME:PASSWORD")
        ->group(group);
    app.add_option("--migrating-account", options.migratingAccounts,
                   "The same, still to be migrated from the legacy system")
        ->option_text("NAME:PASSWORD")
        ->group(group);
    app.add_option("--api-host", configuration.apiHost, "Host that requests must name; without it localhost:PORT")
        ->type_name("HOST")
        ->group(group);
    app.add_option("--consumer-key", configuration.consumerKey, "OAuth consumer key")
        ->type_name("KEY")
        ->capture_default_str()
        ->group(group);
    app.add_option("--consumer-secret", configuration.consumerSecret, "OAuth consumer secret")
        ->type_name("SECRET")
        ->capture_default_str()
        ->group(group);
    app.add_option("--restricted-consumer-key", configuration.restrictedConsumerKey,
                   "A consumer key with the same secret that may read the status alone")
        ->type_name("KEY")
        ->capture_default_str()
        ->group(group);
    app.add_option("--partners-id", configuration.partnersId, "Partner number that requests must carry")
        ->type_name("NUMBER")
        ->capture_default_str()
        ->group(group);
    app.add_flag("--lenient", options.lenient, "Overlook deviations of form")->group(group);
    app.add_flag("--record-requests", configuration.recordRequests,
                 "Keep the latest 1000 requests for GET /requests, secrets included")
        ->group(group);
}

void addAnswerOptions(CLI::App& app, Configuration& configuration) {
    constexpr const char* group = "What it answers";
    constexpr std::int64_t year = 31'536'000;
    const auto seconds = CLI::Range(std::int64_t{0}, year).description("");
    app.add_option("--servers", configuration.serverCount, "Servers in the catalogue, 1 to 100000")
        ->check(CLI::Range(std::size_t{1}, TarnwickService::Catalogue::mostServers).description(""))
        ->type_name("NUMBER")
        ->capture_default_str()
        ->group(group);
    app.add_option("--caller-address", configuration.callerAddress, "Public address that callers appear to have")
        ->type_name("ADDRESS")
        ->capture_default_str()
        ->group(group);
    app.add_option("--caller-zone", configuration.callerZone, "Time zone whose city callers appear to be in")
        ->type_name("ZONE")
        ->capture_default_str()
        ->group(group);
    app.add_option("--minimum-version", configuration.minimumClientVersion, "Oldest client that is accepted")
        ->type_name("VERSION")
        ->capture_default_str()
        ->group(group);
    app.add_option("--catalogue-max-age", configuration.catalogueMaxAge, "How long catalogue answers may be used again")
        ->check(seconds)
        ->type_name("SECONDS")
        ->capture_default_str()
        ->group(group);
    app.add_option("--status-interval", configuration.statusUpdateInterval, "Time between status requests")
        ->check(seconds)
        ->type_name("SECONDS")
        ->capture_default_str()
        ->group(group);
}

void addOptions(CLI::App& app, Options& options) {
    addListeningOptions(app, options);
    addClientOptions(app, options);
    addAnswerOptions(app, options.configuration);
    addFilterOptions(app, options.configuration.filterIds);
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
    app.footer(TarnwickService::helpNotes());
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
