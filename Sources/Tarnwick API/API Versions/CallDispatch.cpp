#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Calls/MapMerge.hpp>

#include <utility>

#include "PreparedRequest.hpp"
#include "RequestEngine.hpp"

namespace Tarnwick_API {

void ApiVersion1::dispatchCall(const ApiCallV1& call, RequestCompletion onCompletion) {
    if (!call.headers()) {
        // The host is asked first: it may do with this backend what it likes meanwhile.
        RequestParts parts{call};
        parts.headers = standardHeaders();
        auto request = lastRequest_->prepare(call, std::move(parts));
        engine_->send(shared_from_this(), std::move(request), 0, std::move(onCompletion));
        return;
    }
    auto headers = standardHeaders()->fields();
    headers += *call.headers();
    sendCall(call, call.parameters().value_or(Platform::Parameters{}), call.encoding(), std::move(headers),
             std::move(onCompletion));
}

void ApiVersion1::sendCall(const ApiCallV1& call, const Platform::Parameters& parameters,
                           Platform::ParameterEncoding encoding, Platform::HttpHeaders headers,
                           RequestCompletion onCompletion) {
    engine_->send(shared_from_this(),
                  prepareRequest(call.method(), call.url(), parameters, encoding, std::move(headers), apiHost()), 0,
                  std::move(onCompletion));
}

}  // namespace Tarnwick_API
