#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Calls/MapMerge.hpp>

#include <utility>

#include "RequestEngine.hpp"

namespace Tarnwick_API {

void ApiVersion1::dispatchCall(const ApiCallV1& call, RequestCompletion onCompletion) {
    auto headers = standardHeaders();
    if (call.headers()) {
        headers += *call.headers();
    }
    sendCall(call, call.parameters().value_or(Platform::Parameters{}), call.encoding(), std::move(headers),
             std::move(onCompletion));
}

void ApiVersion1::sendCall(const ApiCallV1& call, const Platform::Parameters& parameters,
                           Platform::ParameterEncoding encoding, Platform::HttpHeaders headers,
                           RequestCompletion onCompletion) {
    requestEngine().send(call.url(), parameters, encoding, std::move(headers), call.method(), 0,
                         std::move(onCompletion));
}

}  // namespace Tarnwick_API
