#pragma once

#include <Tarnwick_API/Facade/ServerProfile.hpp>

#include <cstdint>

namespace Tarnwick_API {

/// The numbers of the filters that the service's operator has set up. None has a default.
class FilterIds {
public:
    FilterIds(std::int64_t smartServersCandidates, std::int64_t generalCountriesAll,
              std::int64_t generalServersCandidatesPerCountry, std::int64_t generalServersPerCountry,
              std::int64_t downloadingCountriesAll, std::int64_t downloadingServersCandidatesPerCountry,
              std::int64_t streamingCountriesAll, std::int64_t streamingServersCandidatesPerCountry,
              std::int64_t defaultFavorites) noexcept
        : smartServersCandidates_{smartServersCandidates},
          generalCountriesAll_{generalCountriesAll},
          generalServersCandidatesPerCountry_{generalServersCandidatesPerCountry},
          generalServersPerCountry_{generalServersPerCountry},
          downloadingCountriesAll_{downloadingCountriesAll},
          downloadingServersCandidatesPerCountry_{downloadingServersCandidatesPerCountry},
          streamingCountriesAll_{streamingCountriesAll},
          streamingServersCandidatesPerCountry_{streamingServersCandidatesPerCountry},
          defaultFavorites_{defaultFavorites} {}

    /// Candidate servers that the service picks across all countries.
    [[nodiscard]] std::int64_t smartServersCandidates() const noexcept { return smartServersCandidates_; }
    /// All countries, for general use.
    [[nodiscard]] std::int64_t generalCountriesAll() const noexcept { return generalCountriesAll_; }
    /// Candidate servers in one country, for general use.
    [[nodiscard]] std::int64_t generalServersCandidatesPerCountry() const noexcept {
        return generalServersCandidatesPerCountry_;
    }
    /// All servers in one country.
    [[nodiscard]] std::int64_t generalServersPerCountry() const noexcept { return generalServersPerCountry_; }
    /// All countries, for downloading.
    [[nodiscard]] std::int64_t downloadingCountriesAll() const noexcept { return downloadingCountriesAll_; }
    /// Candidate servers in one country, for downloading.
    [[nodiscard]] std::int64_t downloadingServersCandidatesPerCountry() const noexcept {
        return downloadingServersCandidatesPerCountry_;
    }
    /// All countries, for streaming.
    [[nodiscard]] std::int64_t streamingCountriesAll() const noexcept { return streamingCountriesAll_; }
    /// Candidate servers in one country, for streaming.
    [[nodiscard]] std::int64_t streamingServersCandidatesPerCountry() const noexcept {
        return streamingServersCandidatesPerCountry_;
    }
    /// The default favourites.
    [[nodiscard]] std::int64_t defaultFavorites() const noexcept { return defaultFavorites_; }

    [[nodiscard]] std::int64_t getCountryFilterId(ServerProfile profile) const noexcept;
    [[nodiscard]] std::int64_t getCandidateServerFilterId(ServerProfile profile) const noexcept;

private:
    std::int64_t smartServersCandidates_;
    std::int64_t generalCountriesAll_;
    std::int64_t generalServersCandidatesPerCountry_;
    std::int64_t generalServersPerCountry_;
    std::int64_t downloadingCountriesAll_;
    std::int64_t downloadingServersCandidatesPerCountry_;
    std::int64_t streamingCountriesAll_;
    std::int64_t streamingServersCandidatesPerCountry_;
    std::int64_t defaultFavorites_;
};

}  // namespace Tarnwick_API
