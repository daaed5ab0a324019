#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <Calls/DefaultParameters.hpp>
#include <Platform/Http/Requests/RequestHeaders.hpp>

#include <memory>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// A request with what its attempts need to know of its making.
struct PreparedRequest {
    /// Without the parameters: what has to be reachable.
    Platform::Url url;
    Platform::HttpRequest request;
    /// The request as a log may show it that hides secrets; none when there was no such log.
    std::shared_ptr<const Platform::HttpRequest> shown;
};

/// A request with these headers, but for "Host", which names `host`.
[[nodiscard]] std::shared_ptr<const PreparedRequest> prepareRequest(
    Platform::HttpMethod method, const Platform::Url& url, const Platform::Parameters& parameters,
    Platform::ParameterEncoding encoding, Platform::HttpHeaders headers, const std::string& host);

/// What a request for a call is made of.
struct RequestParts {
    /// Without headers. Asks the host for the default parameters, and the call, which may be an application's, for its
    /// own.
    explicit RequestParts(const ApiCallV1& call);

    [[nodiscard]] Platform::Parameters parameters() const;

    Platform::HttpMethod method;
    std::string baseUrl;
    std::string urlPath;
    Platform::Parameters ownParameters;
    DefaultParameters defaultParameters;
    Platform::ParameterEncoding encoding;
    /// These name the host. They are the same ones when they are the same object.
    std::shared_ptr<const Platform::RequestHeaders> headers;

    friend bool operator==(const RequestParts&, const RequestParts&) = default;
};

/// The last request of those that carry no body. Applications ask for the same again and again, and for much of it at
/// once: while they do it is made, checked and kept once.
class LastRequest {
public:
    /// The request of `parts`, which are those of `call`: the last one if that was of the same.
    [[nodiscard]] std::shared_ptr<const PreparedRequest> prepare(const ApiCallV1& call, RequestParts parts);

private:
    std::optional<RequestParts> parts_;
    std::shared_ptr<const PreparedRequest> request_;
};

}  // namespace Tarnwick_API
