#include "Certificates/Certificates.hpp"
#include "ServiceFixture.hpp"

#include <csignal>
#include <fstream>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tarnwick_API {
namespace {

/// Binds or connects a TCP socket to a loopback port; the port it then has, or none.
template <typename Operation>
std::optional<std::uint16_t> tryPort(std::uint16_t port, Operation operation) {
    const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool worked = operation(descriptor, reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
                        getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(descriptor);
    return worked ? std::optional{ntohs(address.sin_port)} : std::nullopt;
}

bool accepts(std::uint16_t port) {
    return tryPort(port, ::connect).has_value();
}

/// The service behind a proxy that speaks HTTP/2 with the client.
class OverHttp2 : public Testing::ServiceFixture {
protected:
    OverHttp2() {
        const auto authority = TarnwickService::CertificateAuthority::create();
        const auto certificate = authority.issue({.dnsNames = {"localhost"}, .ipAddresses = {}});
        std::ofstream{file(".crt")} << certificate.certificatePem;
        std::ofstream{file(".key")} << certificate.privateKeyPem;
        std::ofstream{trustedRoots} << authority.certificatePem();
        proxyPort_ = tryPort(0, ::bind).value();
        startProxy();
        auto configuration = sessionConfiguration();
        configuration.connectTo = {service.apiHost() + ":127.0.0.1:" + std::to_string(proxyPort_)};
        use(configuration);
    }
    ~OverHttp2() override {
        kill(proxy_, SIGKILL);
        waitpid(proxy_, nullptr, 0);
        std::filesystem::remove(file(".crt"));
        std::filesystem::remove(file(".key"));
    }

private:
    [[nodiscard]] std::string file(const char* suffix) const { return trustedRoots.string() + suffix; }

    void startProxy() {
        const std::vector<std::string> words{"nghttpx",
                                             "--single-process",
                                             "--conf=/dev/null",
                                             "--frontend=127.0.0.1," + std::to_string(proxyPort_),
                                             "--backend=127.0.0.1," + std::to_string(service.port()) + ";;tls",
                                             "--insecure",
                                             "--no-ocsp",
                                             "--no-via",
                                             "--no-add-x-forwarded-proto",
                                             "--errorlog-file=/dev/null",
                                             file(".key"),
                                             file(".crt")};
        std::vector<char*> arguments;
        for (const auto& word : words) {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        ASSERT_EQ(posix_spawnp(&proxy_, "nghttpx", nullptr, nullptr, arguments.data(), environ), 0);
        while (!accepts(proxyPort_)) {
            ASSERT_EQ(waitpid(proxy_, nullptr, WNOHANG), 0) << "the proxy has ended";
            std::this_thread::yield();
        }
    }

    std::uint16_t proxyPort_ = 0;
    pid_t proxy_ = -1;
};

TEST_F(OverHttp2, ManyRequestsShareOneConnectionAndNameTheHost) {
    constexpr int count = 300;
    int succeeded = 0;
    int completed = 0;
    ASSERT_TRUE(await<Status>([&](auto done) { api->getStatus(done); }).result) << service.counters().lastRefusal;
    for (int index = 0; index < count; ++index) {
        api->getStatus([&](const std::optional<Status>& status, const std::optional<ApiError>& /*error*/) {
            succeeded += status ? 1 : 0;
            ++completed;
        });
    }
    runUntil([&] { return completed == count; });
    EXPECT_EQ(succeeded, count);
    createAccount("bob", "pw");
    EXPECT_TRUE(signIn("bob", "pw").result);
    EXPECT_TRUE(await<std::vector<Device>>([&](auto done) { api->getDevices(done); }).result);
    EXPECT_EQ(service.counters().refusals, 0U) << service.counters().lastRefusal;
    EXPECT_EQ(queue->pausesAskedFor().size(), 0U);
}

}  // namespace
}  // namespace Tarnwick_API
