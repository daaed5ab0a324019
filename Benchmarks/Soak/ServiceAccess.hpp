#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Benchmarks {

/// How the load reaches the service, and who it is there.
struct ServiceAccess {
    std::string host;
    std::string caFile;
    /// Where connections to the host go; 0 for the host's own port.
    std::uint16_t proxyPort = 0;

    static constexpr const char* password = "soak";
    static constexpr const char* reader = "reader";
    /// Accounts that sign in and out all the time.
    static constexpr std::size_t visitors = 8;
    [[nodiscard]] static std::string visitor(std::size_t number) { return "visitor-" + std::to_string(number); }
    /// For the service's command line.
    [[nodiscard]] static std::vector<std::string> accounts();

    /// Makes a session for this process.
    void install() const;
    [[nodiscard]] std::shared_ptr<Tarnwick_API::TarnwickApi> makeFacade(const std::string& account) const;
};

}  // namespace Benchmarks
