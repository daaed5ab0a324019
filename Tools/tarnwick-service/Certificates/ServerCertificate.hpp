#pragma once

#include "Certificates/Certificates.hpp"
#include "Configuration.hpp"

namespace TarnwickService {

/// What a service with this configuration shows its clients: the certificate given there, else one that the authority
/// issues for localhost, the API host and the names given.
Certificate makeServerCertificate(const CertificateAuthority& authority, const Configuration& configuration);

}  // namespace TarnwickService
