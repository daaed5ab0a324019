#include "Http2Proxy.hpp"

#include <fstream>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

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

}  // namespace

Http2Proxy::Http2Proxy(const std::filesystem::path& folder, const TarnwickService::Certificate& certificate,
                       const std::vector<Backend>& backends, const std::vector<std::string>& options)
    : port_{tryPort(0, ::bind).value()} {
    const auto chain = folder / "proxy.crt";
    const auto key = folder / "proxy.key";
    std::ofstream{chain} << certificate.certificatePem;
    std::ofstream{key} << certificate.privateKeyPem;
    std::vector<std::string> command{"nghttpx",
                                     "--single-process",
                                     "--conf=/dev/null",
                                     "--frontend=127.0.0.1," + std::to_string(port_),
                                     "--insecure",
                                     "--no-ocsp",
                                     "--no-via",
                                     "--no-add-x-forwarded-proto",
                                     "--errorlog-file=/dev/null"};
    for (const auto& [host, port] : backends) {
        const auto server = "--backend=127.0.0.1," + std::to_string(port) + ";";
        if (&host == &backends.front().host) {
            command.push_back(server + ";tls");
        }
        command.push_back(server + host + "/;tls");
    }
    command.insert(command.end(), options.begin(), options.end());
    command.insert(command.end(), {key, chain});
    program_.emplace(command);
    while (!tryPort(port_, ::connect)) {
        if (program_->hasEnded()) {
            throw std::runtime_error{"the proxy has ended"};
        }
        std::this_thread::yield();
    }
}
