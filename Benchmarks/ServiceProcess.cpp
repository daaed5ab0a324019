#include "ServiceProcess.hpp"

#include "Certificates/Certificates.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <arpa/inet.h>
#include <curl/curl.h>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace Benchmarks {

namespace {

constexpr auto longestStart = std::chrono::seconds{20};
/// Requests that an order holds for.
constexpr std::size_t always = 1'000'000'000;

template <typename Ready>
void waitUntil(const char* what, Ready ready) {
    const auto end = std::chrono::steady_clock::now() + longestStart;
    while (!ready()) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error{std::string{what} + " did not start"};
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
}

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

class TcpSocket {
public:
    TcpSocket() : descriptor_{socket(AF_INET, SOCK_STREAM, 0)} {}
    ~TcpSocket() { close(descriptor_); }
    TcpSocket(const TcpSocket&) = delete;
    TcpSocket& operator=(const TcpSocket&) = delete;
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

private:
    int descriptor_;
};

std::uint16_t freePort() {
    const TcpSocket socket;
    auto address = loopback(0);
    socklen_t size = sizeof address;
    if (bind(socket.descriptor(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        getsockname(socket.descriptor(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::system_error{errno, std::generic_category(), "no free port"};
    }
    return ntohs(address.sin_port);
}

bool accepts(std::uint16_t port) {
    const TcpSocket socket;
    const auto address = loopback(port);
    return connect(socket.descriptor(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

std::filesystem::path makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarnwick-benchmarks-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error{errno, std::generic_category(), "no temporary folder"};
    }
    return pattern;
}

std::string content(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command) : process_{-1} {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawnp(&process_, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error{error, std::generic_category(), command.front()};
    }
}

ChildProcess::~ChildProcess() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

const ServiceProcess& ServiceProcess::shared() {
    static const ServiceProcess service;
    return service;
}

ServiceProcess::ServiceProcess(const ServiceSettings& settings)
    : folder_{makeFolder()}, caFile_{(folder_ / "roots.pem").string()} {
    const auto readyFile = folder_ / "ready.json";
    const auto serviceRoot = folder_ / "service.pem";
    std::vector<std::string> command{
        TARNWICK_SERVICE_PROGRAM,        "--ready-file", readyFile.string(), "--ca-file", serviceRoot, "--servers",
        std::to_string(settings.servers)};
    for (const auto& account : settings.accounts) {
        command.insert(command.end(), {"--account", account});
    }
    processes_.push_back(std::make_unique<ChildProcess>(command));
    waitUntil("the service", [&] { return std::filesystem::exists(readyFile); });
    const auto ready = nlohmann::json::parse(content(readyFile));
    port_ = ready.at("port").get<std::uint16_t>();
    controlPort_ = ready.at("control_port").get<std::uint16_t>();

    const auto authority = TarnwickService::CertificateAuthority::create();
    const auto certificate = authority.issue({.dnsNames = {"localhost"}, .ipAddresses = {"127.0.0.1"}});
    const char* const systemRoots = settings.trustsSystemRoots ? curl_version_info(CURLVERSION_NOW)->cainfo : nullptr;
    std::ofstream{caFile_} << content(systemRoots == nullptr ? "" : systemRoots) << content(serviceRoot)
                           << authority.certificatePem();
    if (settings.hasHttp2) {
        startProxy(certificate.certificatePem, certificate.privateKeyPem);
    }
}

void ServiceProcess::startProxy(const std::string& certificatePem, const std::string& privateKeyPem) {
    std::ofstream{folder_ / "proxy.pem"} << certificatePem;
    std::ofstream{folder_ / "proxy.key"} << privateKeyPem;
    http2Port_ = freePort();
    processes_.push_back(std::make_unique<ChildProcess>(std::vector<std::string>{
        "nghttpx", "--conf=/dev/null", "--frontend=127.0.0.1," + std::to_string(http2Port_),
        "--backend=127.0.0.1," + std::to_string(port_) + ";;tls", "--insecure", "--no-ocsp", "--no-via",
        "--no-add-x-forwarded-proto", "--log-level=ERROR", "--errorlog-file=/dev/null", "--workers=1",
        "--single-process", (folder_ / "proxy.key").string(), (folder_ / "proxy.pem").string()}));
    waitUntil("nghttpx", [&] { return accepts(http2Port_); });
}

ServiceProcess::~ServiceProcess() {
    processes_.clear();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void ServiceProcess::closeConnections(std::size_t count) const {
    order(nlohmann::json{{"count", count}, {"headers", {{"Connection", "close"}}}}.dump());
}

void ServiceProcess::serve(const std::string& path, std::size_t size) const {
    order(nlohmann::json{{"count", always},
                         {"path", path},
                         {"body", "x"},
                         {"repeat", size},
                         {"headers", {{"Cache-Control", "max-age=3600"}}}}
              .dump());
}

void ServiceProcess::serve(const std::string& path, const std::string& json) const {
    order(
        nlohmann::json{{"count", always}, {"path", path}, {"body", json}, {"content_type", "application/json"}}.dump());
}

void ServiceProcess::order(const std::string& faults) const {
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle{curl_easy_init(), &curl_easy_cleanup};
    const auto url = "http://127.0.0.1:" + std::to_string(controlPort_) + "/faults";
    curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, faults.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_FAILONERROR, 1L);
    if (curl_easy_perform(handle.get()) != CURLE_OK) {
        throw std::runtime_error{"the service takes no faults"};
    }
}

}  // namespace Benchmarks
