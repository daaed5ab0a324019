#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ServerProfile.hpp>

#include <cstdint>

namespace Tarnwick_API {

/// The same numbers by name: `FilterIds{{.generalCountriesAll = 12, ...}}`. One that is left out is 0, which is no
/// filter of any service: leave out those alone that the application's operations don't use.
struct FilterIdNumbers {
    /// Candidate servers that the service picks across all countries: `getCandidateServers` without a country, for
    /// general use.
    std::int64_t smartServersCandidates = 0;
    /// All countries, for general use: `getCountries`. Those for other uses likewise.
    std::int64_t generalCountriesAll = 0;
    /// Candidate servers in one country, for general use: `getCandidateServers`. Those for other uses likewise.
    std::int64_t generalServersCandidatesPerCountry = 0;
    /// All servers in one country: `getServers`.
    std::int64_t generalServersPerCountry = 0;
    /// All countries, for downloading.
    std::int64_t downloadingCountriesAll = 0;
    /// Candidate servers in one country, for downloading.
    std::int64_t downloadingServersCandidatesPerCountry = 0;
    /// All countries, for streaming.
    std::int64_t streamingCountriesAll = 0;
    /// Candidate servers in one country, for streaming.
    std::int64_t streamingServersCandidatesPerCountry = 0;
    /// The default favourites: `getDefaultFavorites`.
    std::int64_t defaultFavorites = 0;
};

/// The numbers of the filters that the service's operator has set up. None has a default.
class TARNWICK_API_EXPORT FilterIds {
public:
    explicit FilterIds(const FilterIdNumbers& numbers) noexcept : numbers_{numbers} {}
    FilterIds(std::int64_t smartServersCandidates, std::int64_t generalCountriesAll,
              std::int64_t generalServersCandidatesPerCountry, std::int64_t generalServersPerCountry,
              std::int64_t downloadingCountriesAll, std::int64_t downloadingServersCandidatesPerCountry,
              std::int64_t streamingCountriesAll, std::int64_t streamingServersCandidatesPerCountry,
              std::int64_t defaultFavorites) noexcept
        : numbers_{smartServersCandidates,
                   generalCountriesAll,
                   generalServersCandidatesPerCountry,
                   generalServersPerCountry,
                   downloadingCountriesAll,
                   downloadingServersCandidatesPerCountry,
                   streamingCountriesAll,
                   streamingServersCandidatesPerCountry,
                   defaultFavorites} {}

    [[nodiscard]] std::int64_t smartServersCandidates() const noexcept { return numbers_.smartServersCandidates; }
    [[nodiscard]] std::int64_t generalCountriesAll() const noexcept { return numbers_.generalCountriesAll; }
    [[nodiscard]] std::int64_t generalServersCandidatesPerCountry() const noexcept {
        return numbers_.generalServersCandidatesPerCountry;
    }
    [[nodiscard]] std::int64_t generalServersPerCountry() const noexcept { return numbers_.generalServersPerCountry; }
    [[nodiscard]] std::int64_t downloadingCountriesAll() const noexcept { return numbers_.downloadingCountriesAll; }
    [[nodiscard]] std::int64_t downloadingServersCandidatesPerCountry() const noexcept {
        return numbers_.downloadingServersCandidatesPerCountry;
    }
    [[nodiscard]] std::int64_t streamingCountriesAll() const noexcept { return numbers_.streamingCountriesAll; }
    [[nodiscard]] std::int64_t streamingServersCandidatesPerCountry() const noexcept {
        return numbers_.streamingServersCandidatesPerCountry;
    }
    [[nodiscard]] std::int64_t defaultFavorites() const noexcept { return numbers_.defaultFavorites; }

    /// The filter for that use: of countries, and of candidate servers in one country.
    /// @{
    [[nodiscard]] std::int64_t getCountryFilterId(ServerProfile profile) const noexcept;
    [[nodiscard]] std::int64_t getCandidateServerFilterId(ServerProfile profile) const noexcept;
    /// @}

private:
    FilterIdNumbers numbers_;
};

}  // namespace Tarnwick_API
