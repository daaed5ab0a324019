#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

/// The headers that a request goes out with, its session's included, as far as a cache has to know them.
class RequestFields {
public:
    /// Both must outlive this.
    RequestFields(const HttpRequest& request, const HttpHeaders& sessionHeaders)
        : request_{request}, sessionHeaders_{sessionHeaders} {}

    /// The value, or the empty text; "Host" also when it is not said.
    [[nodiscard]] std::string_view value(std::string_view name) const;

    /// What tells the requests of one URL apart: the values of "Authorization", of "Host" and of the fields that
    /// `vary`, the value of a response's "Vary", nominates. A digest, as a cache on disk must not hold credentials.
    [[nodiscard]] Bytes secondaryKey(std::string_view vary) const;

private:
    const HttpRequest& request_;
    const HttpHeaders& sessionHeaders_;
};

/// Makes the digests ready, so that the library that computes them ends after whoever calls this at the start and
/// registers an exit handler then.
void prepareSecondaryKeys();

}  // namespace Tarnwick_API::Platform
