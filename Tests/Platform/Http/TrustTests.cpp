#include "SessionFixture.hpp"

#include <array>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <unistd.h>

namespace {

using namespace Tarnwick_API::Platform;
using namespace std::chrono_literals;
using TarnwickService::Certificate;
using TarnwickService::CertificateAuthority;
using TarnwickService::CertificateRequest;

/// A file of certificates for as long as this lives.
class RootsFile {
public:
    explicit RootsFile(const std::string& pem)
        : path_{std::filesystem::temp_directory_path() /
                ("roots-" + std::to_string(::getpid()) + "-" + std::to_string(++counter_) + ".pem")} {
        std::ofstream{path_} << pem;
    }
    ~RootsFile() { std::filesystem::remove(path_); }
    RootsFile(const RootsFile&) = delete;
    RootsFile& operator=(const RootsFile&) = delete;

    [[nodiscard]] std::string path() const { return path_.string(); }

private:
    static inline int counter_ = 0;
    std::filesystem::path path_;
};

CertificateRequest forNames(std::vector<std::string> dnsNames, std::vector<std::string> ipAddresses = {}) {
    CertificateRequest request;
    request.dnsNames = std::move(dnsNames);
    request.ipAddresses = std::move(ipAddresses);
    return request;
}

/// As a session is told of the certificate's public key.
std::string pinOf(const Certificate& certificate) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> pem{
        BIO_new_mem_buf(certificate.certificatePem.data(), static_cast<int>(certificate.certificatePem.size())),
        &BIO_free};
    const std::unique_ptr<X509, decltype(&X509_free)> parsed{PEM_read_bio_X509(pem.get(), nullptr, nullptr, nullptr),
                                                             &X509_free};
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned char* der = nullptr;
    const auto size = i2d_X509_PUBKEY(X509_get_X509_PUBKEY(parsed.get()), &der);
    EVP_Digest(der, static_cast<std::size_t>(size), digest.data(), nullptr, EVP_sha256(), nullptr);
    OPENSSL_free(der);
    std::array<unsigned char, 64> base64{};
    EVP_EncodeBlock(base64.data(), digest.data(), 32);
    return "sha256//" + std::string{reinterpret_cast<const char*>(base64.data())};
}

class Trust : public SessionFixture {
protected:
    std::shared_ptr<HttpSession> makeSession(HostValidation literal, std::vector<std::string> connectTo = {}) {
        auto configuration = plainConfiguration();
        configuration.idleTimeout = 10s;
        configuration.trustedRootsFile = roots.path();
        configuration.trustPolicies = {{"127.0.0.1", literal}};
        configuration.connectTo = std::move(connectTo);
        return makeHttpSession(configuration);
    }

    const CertificateAuthority authority = CertificateAuthority::create();
    const RootsFile roots{authority.certificatePem()};
};

TEST_F(Trust, IsKeptForConnectionsThatTheServerMayHaveClosedMeanwhile) {
    // Six are as many as libcurl tries in vain before it gives a request up.
    constexpr std::size_t count = 6;
    ScriptedServer server{authority.issue(forNames({}, {"127.0.0.1"}))};
    for (std::size_t number = 0; number < count; ++number) {
        server.answer({okAnswer("before").bytes, ScriptedAnswer::Then::close, count});
    }
    server.answer(okAnswer("after"));
    const auto session = makeSession(HostValidation::full);
    for (std::size_t number = 0; number < count; ++number) {
        send(*session, request(server.url()));
    }
    ASSERT_TRUE(waitForAnswers(count) && server.waitForClosed(count));
    EXPECT_EQ(exchange(*session, request(server.url())).body, "after");
}

TEST_F(Trust, ChangesNothingOfWhatIsAskedFor) {
    ScriptedServer server{authority.issue(forNames({}, {"127.0.0.1"}))};
    const auto session = makeSession(HostValidation::full);
    server.answer({"HTTP/1.1 302 Found\r\nLocation: n?y\r\nContent-Length: 0\r\n\r\n"});
    for (const auto& [url, target] : {std::pair{"/a/b?x=1", "/a/n?y"},
                                      {"/a/../b?x=%20&y?/#f", "/a/../b?x=%20&y?/"},
                                      {"/b#?x", "/b"},
                                      {"?x", "/?x"},
                                      {"", "/"}}) {
        server.answer(okAnswer(""));
        EXPECT_EQ(errorName(exchange(*session, request(server.url() + url))), "none");
        EXPECT_THAT(server.requests().back(), testing::StartsWith("GET " + std::string{target} + " HTTP/1.1\r\n"));
    }
}

TEST_F(Trust, RelaxedForOneHostIsNotReusedForAnother) {
    const auto certificate = authority.issue(forNames({"api.example.test"}));
    ScriptedServer server{certificate};
    const auto port = std::to_string(server.port());
    const auto elsewhere = [&](const std::string& name) { return "https://" + name + ":" + port; };
    server.answer(
        {"HTTP/1.1 307 Go\r\nContent-Length: 0\r\nLocation: " + elsewhere("wrong.example.test") + "/\r\n\r\n"});
    server.answer({"HTTP/1.1 307 Go\r\nContent-Length: 0\r\nLocation: " + elsewhere("api.example.test") + "/\r\n\r\n"});
    server.answerAlways(okAnswer("done"));
    const auto session = makeSession(HostValidation::chainOnly, {"::127.0.0.1:" + port});
    // Each hop is judged by its own host.
    EXPECT_EQ(errorName(exchange(*session, request(server.url() + "/"))), "certificate");
    EXPECT_EQ(exchange(*session, request(server.url() + "/")).body, "done");
    // Nor does a connection, or a TLS session, of a lenient session serve a strict one.
    EXPECT_EQ(errorName(exchange(*makeSession(HostValidation::full), request(server.url() + "/"))), "certificate");
}

TEST_F(Trust, MayDependOnThePublicKeyToo) {
    const auto certificate = authority.issue(forNames({}, {"127.0.0.1"}));
    const auto own = pinOf(certificate);
    const auto other = pinOf(authority.issue(forNames({}, {"127.0.0.1"})));
    const std::pair<std::string, const char*> rows[] = {
        {own, "none"},    {other, "certificate"},  {other + ";" + own, "none"},
        {"", "encoding"}, {own + ";", "encoding"}, {"/etc/hosts", "encoding"}};
    ScriptedServer server{certificate};
    server.answerAlways(okAnswer("private"));
    for (const auto& [keys, expected] : rows) {
        SCOPED_TRACE(keys);
        auto configuration = plainConfiguration();
        configuration.trustedRootsFile = roots.path();
        configuration.pinnedPublicKeys = {{"127.0.0.1", keys}};
        EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), request(server.url()))), expected);
    }
}

TEST_F(Trust, NeedsAReadableRootsFile) {
    ScriptedServer server{authority.issue(forNames({}, {"127.0.0.1"}))};
    auto configuration = plainConfiguration();
    configuration.trustedRootsFile = roots.path() + ".missing";
    EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), request(server.url()))), "tls");
    configuration.trustedRootsFile.reset();
    EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), request(server.url()))), "certificate");
}

TEST_F(Trust, SendsTheUrlsHostToTlsAndTheHostHeaderToHttp) {
    ScriptedServer server{authority.issue(forNames({"tls.example.test"}))};
    server.answer(okAnswer(""));
    const auto session = makeSession(HostValidation::full, {"tls.example.test:443:" + server.authority()});
    const auto answer = exchange(*session, request("https://tls.example.test/", HttpMethod::get, {},
                                                   ParameterEncoding::url, {{"Host", "api.example.test"}}));
    EXPECT_EQ(errorName(answer), "none");
    EXPECT_THAT(server.requests().at(0), testing::HasSubstr("\r\nHost: api.example.test\r\n"));
}

TEST_F(Trust, HoldsOverHttp2WhereAnAnswerMayComeBeforeTheRequestIsOut) {
    // Its head alone ends the answer on stream 3; the POST's body may come or not.
    const std::string refusal{
        "\0\0\5\1\5\0\0\0\3\x08\x03"
        "401",
        14};
    constexpr int tries = 5;
    for (int count = 0; count < tries; ++count) {
        ScriptedServer server{authority.issue(forNames({}, {"127.0.0.1"})), ScriptedServer::Protocol::http2};
        server.answer({});
        server.answer({refusal});
        const auto session = makeSession(HostValidation::full);
        // Another request keeps the connection, on which nothing else happens.
        session->send(request(server.url()), nullptr);
        ASSERT_TRUE(server.waitForRequests(1));
        const auto answer = exchange(*session, request(server.url(), HttpMethod::post, {{"a", 1}}));
        EXPECT_EQ(errorName(answer), "none");
        EXPECT_EQ(answer.response.value_or(HttpResponse{}).status, 401);
    }
}

TEST_F(Trust, ConnectionsAreKept) {
    ScriptedServer server{authority.issue(forNames({}, {"127.0.0.1"}))};
    server.answerAlways(okAnswer("x"));
    const auto session = makeSession(HostValidation::full);
    for (int count = 0; count < 10; ++count) {
        EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "none");
    }
    EXPECT_EQ(server.connections(), 1U);
}

}  // namespace
