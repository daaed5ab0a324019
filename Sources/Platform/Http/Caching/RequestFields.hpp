#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <string>
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

    /// What stands for the values of "Authorization", of "Host" and of the headers that `vary`, the value of an
    /// answer's "Vary", names: a digest, as a cache on disk must not hold credentials. Equal only for equal values.
    [[nodiscard]] Bytes identity(std::string_view vary) const;

private:
    const HttpRequest& request_;
    const HttpHeaders& sessionHeaders_;
};

/// Makes the digests ready, so that the library that computes them ends after whoever calls this at the start and
/// registers an exit handler then.
void prepareRequestIdentities();

}  // namespace Tarnwick_API::Platform
