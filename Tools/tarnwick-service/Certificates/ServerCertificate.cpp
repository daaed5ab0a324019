#include "Certificates/ServerCertificate.hpp"

#include <utility>

#include <arpa/inet.h>

namespace TarnwickService {
namespace {

bool isAddress(const std::string& text) {
    in6_addr buffer{};
    return inet_pton(AF_INET, text.c_str(), &buffer) == 1 || inet_pton(AF_INET6, text.c_str(), &buffer) == 1;
}

std::string withoutPort(const std::string& host) {
    if (host.starts_with('[')) {
        return host.substr(1, host.find(']') - 1);
    }
    return host.substr(0, host.find(':'));
}

}  // namespace

Certificate makeServerCertificate(const CertificateAuthority& authority, const Configuration& configuration) {
    if (configuration.certificate) {
        return *configuration.certificate;
    }
    CertificateRequest request;
    request.dnsNames = {"localhost"};
    request.ipAddresses = {"127.0.0.1", "::1"};
    std::vector<std::string> names = configuration.certificateNames;
    if (!configuration.apiHost.empty()) {
        names.push_back(withoutPort(configuration.apiHost));
    }
    for (std::string& name : names) {
        (isAddress(name) ? request.ipAddresses : request.dnsNames).push_back(std::move(name));
    }
    constexpr std::chrono::hours thirtyDays{24 * 30};
    request.validUntil = thirtyDays;
    return authority.issue(request);
}

}  // namespace TarnwickService
