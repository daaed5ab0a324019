#include "Certificates/Certificates.hpp"
#include "ServiceFixture.hpp"

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using TarnwickService::CertificateAuthority;
using TarnwickService::CertificateRequest;

const CertificateAuthority& authority() {
    static const auto trusted = CertificateAuthority::create();
    return trusted;
}

struct Case {
    const char* name;
    TarnwickService::Certificate certificate;
    bool acceptedByName;
    bool acceptedInFallbackMode;
};

std::vector<Case> cases() {
    using std::chrono::hours;
    const CertificateRequest good{.dnsNames = {"localhost"}, .ipAddresses = {"127.0.0.1"}};
    auto expired = good;
    expired.validFrom = -hours{48};
    expired.validUntil = -hours{24};
    auto future = good;
    future.validFrom = hours{24};
    future.validUntil = hours{48};
    auto clientOnly = good;
    clientOnly.clientUsageOnly = true;
    return {
        {"good", authority().issue(good), true, true},
        {"wrongName", authority().issue({.dnsNames = {"other.example"}, .ipAddresses = {}}), false, true},
        {"expired", authority().issue(expired), false, false},
        {"notYetValid", authority().issue(future), false, false},
        {"clientUsageOnly", authority().issue(clientOnly), false, false},
        {"selfSigned", makeSelfSigned(good), false, false},
        {"unknownIssuer", CertificateAuthority::create().issue(good), false, false},
    };
}

class ShownCertificate : public Testing::ServiceFixture {
protected:
    explicit ShownCertificate(const TarnwickService::Certificate& certificate)
        : ServiceFixture{{.certificate = certificate}} {
        std::ofstream{trustedRoots} << authority().certificatePem();
    }
    void TestBody() override {}

public:
    static void check(const Case& shown) {
        ShownCertificate test{shown.certificate};
        for (const bool fallback : {false, true}) {
            test.api->setUseFallbackIp(fallback);
            const auto received = test.await<Status>([&](auto done) { test.api->getStatus(done); });
            const bool accepted = fallback ? shown.acceptedInFallbackMode : shown.acceptedByName;
            EXPECT_EQ(received.result.has_value(), accepted) << (fallback ? "fallback" : "by name");
            EXPECT_EQ(received.error, accepted ? std::nullopt : std::optional<ApiError>{ResponseError::notReachable()});
        }
        const auto expected =
            static_cast<std::uint64_t>(shown.acceptedByName) + static_cast<std::uint64_t>(shown.acceptedInFallbackMode);
        EXPECT_EQ(test.service.counters().requests, expected);
    }
};

TEST(Certificates, AreCheckedFullyExceptForTheNameAtTheFallbackAddress) {
    for (const auto& shown : cases()) {
        SCOPED_TRACE(shown.name);
        ShownCertificate::check(shown);
    }
}

}  // namespace
}  // namespace Tarnwick_API
