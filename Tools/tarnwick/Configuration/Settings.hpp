#pragma once

#include <Tarnwick_API/Facade/ApiEnvironment.hpp>
#include <Tarnwick_API/Facade/ApiVersion.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace TarnwickClient {

/// The filters in the order in which the library takes them.
enum class Filter : std::size_t {
    smartServersCandidates,
    generalCountriesAll,
    generalServersCandidatesPerCountry,
    generalServersPerCountry,
    downloadingCountriesAll,
    downloadingServersCandidatesPerCountry,
    streamingCountriesAll,
    streamingServersCandidatesPerCountry,
    defaultFavorites,
};
inline constexpr std::size_t filterCount = 9;

/// Who keeps the access token: the library's choice, the system's keychain or a private file.
enum class KeychainKind { automatic, system, file };

/// What the user has set, by flags, the environment or the configuration file.
struct Settings {
    Tarnwick_API::ApiEnvironment environment = Tarnwick_API::ApiEnvironment::live;
    Tarnwick_API::ApiVersion apiVersion = Tarnwick_API::ApiVersion::v1;
    std::string consumerKey;
    std::string consumerSecret;
    std::optional<std::int64_t> partnerId;
    std::string installationId;
    std::string keychainService = "tarnwick";
    KeychainKind keychain = KeychainKind::automatic;
    std::string keychainFile;
    /// By the order of `ApiEnvironment`.
    std::array<std::string, 4> hosts;
    std::array<std::optional<std::int64_t>, filterCount> filters;
    bool fallback = false;
    std::string caFile;
    std::vector<std::string> connectTo;
    double idleTimeout = 60;
    double timeout = 120;
    /// The folder of the cache; empty for none.
    std::string cacheFolder;
    std::string clickId;
    bool json = false;
    bool verbose = false;
    bool hideSecrets = false;
};

inline constexpr const char* settingsHelp =
    "Settings:\n"
    "The options above, but for those that print something and end, may also stand in the configuration file, which "
    "is\n"
    "TOML, without the dashes (partner-id = 7), or in the environment (TARNWICK_PARTNER_ID=7). Options go before the\n"
    "environment, the environment before the file.\n";

class ConfigurationFile;

/// Adds the options that fill `settings`, which must outlive the parsing. Gives the file that they are read from.
std::shared_ptr<const ConfigurationFile> addSettings(CLI::App& app, Settings& settings);

/// Throws `Failure` naming all settings that are missing and that no request can do without, nor one that needs
/// `filter`, or the first one that is unusable.
void requireServiceSettings(const Settings& settings, std::optional<Filter> filter);

/// "live", "beta", ...
[[nodiscard]] const char* name(Tarnwick_API::ApiEnvironment environment) noexcept;

}  // namespace TarnwickClient
