#pragma once

#include "Configuration.hpp"
#include "Control/Faults.hpp"
#include "Control/Traffic.hpp"
#include "Model/Accounts.hpp"
#include "Model/Catalogue.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TarnwickService {

/// A stand-in for the VPN service over HTTPS: real state behind the real wire format. Its operations may be called from
/// any thread, except that start and stop take turns.
class Service {
public:
    /// Reads the table of places. Throws std::exception when that fails or the configuration makes no sense.
    explicit Service(Configuration configuration);
    /// Stops.
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /// Listens when it returns. Throws std::exception when a port cannot be had.
    void start();
    /// Cuts every connection, ends every delay and returns when all threads have ended. The state stays.
    void stop();

    const Configuration& configuration() const;
    /// Of the running service.
    std::uint16_t port() const;
    /// Of the running service; none when it has no control interface.
    std::optional<std::uint16_t> controlPort() const;
    /// The host that clients must be given: the configured one or "localhost:PORT" of the running service.
    std::string apiHost() const;
    /// What clients must trust.
    const std::string& caCertificatePem() const;

    Accounts& accounts();
    const Catalogue& catalogue() const;
    Faults& faults();

    Counters counters() const;
    /// The latest ones, oldest first; empty unless the configuration asks for them.
    std::vector<RecordedRequest> recordedRequests() const;

    /// Forgets accounts, sessions, faults, recorded requests and counts.
    void reset();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace TarnwickService
