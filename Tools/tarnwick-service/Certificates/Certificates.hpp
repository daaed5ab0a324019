#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace TarnwickService {

/// A certificate and the private key that belongs to it, both as PEM text.
struct Certificate {
    std::string certificatePem;
    std::string privateKeyPem;
};

/// What a certificate vouches for. The validity is relative to the moment of issue; a `validUntil` in the past makes
/// an expired certificate.
struct CertificateRequest {
    std::vector<std::string> dnsNames{};
    std::vector<std::string> ipAddresses{};
    std::chrono::seconds validFrom{-3600};
    std::chrono::seconds validUntil{86400};
};

/// A certificate authority of its own: made anew, its key never leaves the process.
class CertificateAuthority {
public:
    /// Throws std::runtime_error when the cryptography library fails.
    static CertificateAuthority create();

    /// What a client must trust.
    const std::string& certificatePem() const;

    /// Throws std::invalid_argument when a name or an address cannot be put into a certificate.
    Certificate issue(const CertificateRequest& request) const;

private:
    struct Identity;
    explicit CertificateAuthority(std::shared_ptr<const Identity> identity);

    std::shared_ptr<const Identity> identity_;
};

}  // namespace TarnwickService
