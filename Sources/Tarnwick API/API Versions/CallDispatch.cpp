#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Calls/MapMerge.hpp>

#include <utility>

namespace Tarnwick_API {

void ApiVersion1::dispatchCall(const ApiCallV1& call, RequestCompletion onCompletion) {
    auto headers = standardHeaders();
    if (call.headers()) {
        headers += *call.headers();
    }
    sendRequest(call.url(), call.parameters().value_or(Platform::Parameters{}), call.encoding(), headers, call.method(),
                std::move(onCompletion));
}

}  // namespace Tarnwick_API
