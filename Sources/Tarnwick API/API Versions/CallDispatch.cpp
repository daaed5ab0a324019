#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Calls/MapMerge.hpp>
#include <Platform/Text/Wiping.hpp>

#include <utility>

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
    sendRequest(call.url(), parameters, encoding, headers, call.method(), std::move(onCompletion));
    for (auto& header : headers) {
        Platform::wipe(header.second);
    }
}

}  // namespace Tarnwick_API
