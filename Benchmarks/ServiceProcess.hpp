#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace Benchmarks {

/// A program that runs until this goes.
class ChildProcess {
public:
    /// Throws std::runtime_error when it can't be started.
    explicit ChildProcess(const std::vector<std::string>& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

private:
    pid_t process_;
};

/// How to start the service.
struct ServiceSettings {
    std::size_t servers = 100'000;
    /// Each as NAME:PASSWORD.
    std::vector<std::string> accounts = {};
    /// Puts an HTTP/2 proxy in front.
    bool hasHttp2 = true;
    /// Lets the CA file hold the system's certificates too, as reading them is part of what connecting costs.
    bool trustsSystemRoots = true;
};

/// The stand-in service in a process of its own, so that its processor time and memory are not counted as the client's,
/// and with an HTTP/2 proxy in front if asked for.
class ServiceProcess {
public:
    /// The one of this run, started when first asked for.
    static const ServiceProcess& shared();

    explicit ServiceProcess(const ServiceSettings& settings = {});
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;
    ~ServiceProcess();

    [[nodiscard]] std::uint16_t port() const noexcept { return port_; }
    [[nodiscard]] std::uint16_t controlPort() const noexcept { return controlPort_; }
    /// The same service over HTTP/2.
    [[nodiscard]] std::uint16_t http2Port() const noexcept { return http2Port_; }
    [[nodiscard]] const std::string& caFile() const noexcept { return caFile_; }
    [[nodiscard]] std::string host() const { return "localhost:" + std::to_string(port_); }

    /// Lets the service close the connection after each of the next `count` answers.
    void closeConnections(std::size_t count) const;

    /// Lets the service answer every request for `path`, below its base, with a body of this size that may be kept for
    /// an hour.
    void serve(const std::string& path, std::size_t size) const;
    /// The same with this JSON, which may not be kept.
    void serve(const std::string& path, const std::string& json) const;

    [[nodiscard]] const std::filesystem::path& folder() const noexcept { return folder_; }

private:
    void startProxy(const std::string& certificatePem, const std::string& privateKeyPem);
    void order(const std::string& faults) const;

    std::filesystem::path folder_;
    std::string caFile_;
    std::uint16_t port_ = 0;
    std::uint16_t controlPort_ = 0;
    std::uint16_t http2Port_ = 0;
    std::vector<std::unique_ptr<ChildProcess>> processes_;
};

}  // namespace Benchmarks
