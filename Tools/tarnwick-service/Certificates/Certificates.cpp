#include "Certificates/Certificates.hpp"

#include <array>
#include <cstdint>
#include <ctime>
#include <stdexcept>
#include <string_view>

#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

namespace TarnwickService {
namespace {

template <auto Free>
struct Deleter {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};

using KeyHandle = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY_free>>;
using CertificateHandle = std::unique_ptr<X509, Deleter<X509_free>>;
using BioHandle = std::unique_ptr<BIO, Deleter<BIO_free>>;
using ExtensionHandle = std::unique_ptr<X509_EXTENSION, Deleter<X509_EXTENSION_free>>;
using NamesHandle = std::unique_ptr<GENERAL_NAMES, Deleter<GENERAL_NAMES_free>>;
using NameHandle = std::unique_ptr<GENERAL_NAME, Deleter<GENERAL_NAME_free>>;
using Ia5Handle = std::unique_ptr<ASN1_IA5STRING, Deleter<ASN1_IA5STRING_free>>;
using OctetsHandle = std::unique_ptr<ASN1_OCTET_STRING, Deleter<ASN1_OCTET_STRING_free>>;

void require(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::runtime_error(std::string("OpenSSL: ") + what + ": " +
                                 ERR_reason_error_string(ERR_peek_last_error()));
    }
}

KeyHandle makeKey() {
    KeyHandle key(EVP_EC_gen("P-256"));
    require(key != nullptr, "cannot make a key");
    return key;
}

template <typename Write>
std::string toPem(Write write) {
    const BioHandle bio(BIO_new(BIO_s_mem()));
    require(bio != nullptr && write(bio.get()) == 1, "cannot write PEM");
    char* data = nullptr;
    const auto size = BIO_get_mem_data(bio.get(), &data);
    return {data, static_cast<std::size_t>(size)};
}

std::string certificateToPem(X509* certificate) {
    return toPem([&](BIO* bio) { return PEM_write_bio_X509(bio, certificate); });
}

std::string keyToPem(EVP_PKEY* key) {
    return toPem([&](BIO* bio) { return PEM_write_bio_PrivateKey(bio, key, nullptr, nullptr, 0, nullptr, nullptr); });
}

void setSerialNumber(X509* certificate) {
    std::uint64_t serial = 0;
    require(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "no random bytes");
    require(ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), serial >> 1U | 1U) == 1, "serial number");
}

void setValidity(X509* certificate, std::chrono::seconds from, std::chrono::seconds until) {
    const std::time_t now = std::time(nullptr);
    require(ASN1_TIME_set(X509_getm_notBefore(certificate), now + from.count()) != nullptr, "start of validity");
    require(ASN1_TIME_set(X509_getm_notAfter(certificate), now + until.count()) != nullptr, "end of validity");
}

void setCommonName(X509_NAME* name, std::string_view text) {
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, reinterpret_cast<const unsigned char*>(text.data()),
                                       static_cast<int>(text.size()), -1, 0) == 1,
            "common name");
}

void addExtension(X509* certificate, X509* issuer, int identifier, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const ExtensionHandle extension(X509V3_EXT_conf_nid(nullptr, &context, identifier, value));
    require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1, "extension");
}

NameHandle makeDnsName(const std::string& text) {
    Ia5Handle value(ASN1_IA5STRING_new());
    require(value != nullptr, "DNS name");
    if (text.empty() || ASN1_STRING_set(value.get(), text.data(), static_cast<int>(text.size())) != 1) {
        throw std::invalid_argument("not a DNS name: \"" + text + '"');
    }
    NameHandle name(GENERAL_NAME_new());
    require(name != nullptr, "DNS name");
    GENERAL_NAME_set0_value(name.get(), GEN_DNS, value.release());
    return name;
}

NameHandle makeAddress(const std::string& text) {
    OctetsHandle value(a2i_IPADDRESS(text.c_str()));
    if (value == nullptr) {
        throw std::invalid_argument("not an IP address: \"" + text + '"');
    }
    NameHandle name(GENERAL_NAME_new());
    require(name != nullptr, "IP address");
    GENERAL_NAME_set0_value(name.get(), GEN_IPADD, value.release());
    return name;
}

// Built from its parts: the textual form of the extension would let a comma inside a name add further names.
void addSubjectNames(X509* certificate, const CertificateRequest& request) {
    const NamesHandle names(GENERAL_NAMES_new());
    require(names != nullptr, "subject names");
    const auto add = [&](NameHandle name) {
        require(sk_GENERAL_NAME_push(names.get(), name.get()) > 0, "subject names");
        static_cast<void>(name.release());
    };
    for (const std::string& name : request.dnsNames) {
        add(makeDnsName(name));
    }
    for (const std::string& address : request.ipAddresses) {
        add(makeAddress(address));
    }
    if (sk_GENERAL_NAME_num(names.get()) > 0) {
        require(X509_add1_ext_i2d(certificate, NID_subject_alt_name, names.get(), 0, 0) == 1, "subject names");
    }
}

CertificateHandle newCertificate(EVP_PKEY* key, std::string_view commonName) {
    CertificateHandle certificate(X509_new());
    require(certificate != nullptr, "no certificate");
    require(X509_set_version(certificate.get(), X509_VERSION_3) == 1, "version");
    setSerialNumber(certificate.get());
    setCommonName(X509_get_subject_name(certificate.get()), commonName);
    require(X509_set_pubkey(certificate.get(), key) == 1, "public key");
    return certificate;
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* issuerKey) {
    require(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1, "issuer");
    addExtension(certificate, issuer, NID_authority_key_identifier, "keyid:always");
    require(X509_sign(certificate, issuerKey, EVP_sha256()) > 0, "signature");
}

std::string_view commonNameOf(const CertificateRequest& request) {
    // X.509 limits a common name to 64 characters; clients look at the subject names anyway.
    constexpr std::size_t longestCommonName = 64;
    std::string_view name = "Tarnwick stand-in service";
    if (!request.dnsNames.empty()) {
        name = request.dnsNames.front();
    } else if (!request.ipAddresses.empty()) {
        name = request.ipAddresses.front();
    }
    return name.substr(0, longestCommonName);
}

CertificateHandle makeServerCertificate(EVP_PKEY* key, const CertificateRequest& request) {
    CertificateHandle certificate = newCertificate(key, commonNameOf(request));
    setValidity(certificate.get(), request.validFrom, request.validUntil);
    addExtension(certificate.get(), certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(certificate.get(), certificate.get(), NID_key_usage, "critical,digitalSignature");
    addExtension(certificate.get(), certificate.get(), NID_ext_key_usage, "serverAuth");
    addExtension(certificate.get(), certificate.get(), NID_subject_key_identifier, "hash");
    addSubjectNames(certificate.get(), request);
    return certificate;
}

}  // namespace

struct CertificateAuthority::Identity {
    KeyHandle key;
    CertificateHandle certificate;
    std::string pem;
};

CertificateAuthority::CertificateAuthority(std::shared_ptr<const Identity> identity) : identity_(std::move(identity)) {
}

CertificateAuthority CertificateAuthority::create() {
    auto identity = std::make_shared<Identity>();
    identity->key = makeKey();
    identity->certificate = newCertificate(identity->key.get(), "Tarnwick stand-in authority");
    X509* certificate = identity->certificate.get();
    // Wide enough to vouch for certificates that are already over or not yet valid.
    constexpr std::chrono::hours tenYears{24 * 365 * 10};
    setValidity(certificate, -tenYears, tenYears);
    addExtension(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
    addExtension(certificate, certificate, NID_subject_key_identifier, "hash");
    sign(certificate, certificate, identity->key.get());
    identity->pem = certificateToPem(certificate);
    return CertificateAuthority(std::move(identity));
}

const std::string& CertificateAuthority::certificatePem() const {
    return identity_->pem;
}

Certificate CertificateAuthority::issue(const CertificateRequest& request) const {
    const KeyHandle key = makeKey();
    const CertificateHandle certificate = makeServerCertificate(key.get(), request);
    sign(certificate.get(), identity_->certificate.get(), identity_->key.get());
    return {certificateToPem(certificate.get()), keyToPem(key.get())};
}

}  // namespace TarnwickService
