#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/StatusCallV1.hpp>

#include <utility>

#include <DecodeAnswer.hpp>

namespace Tarnwick_API {

void ApiVersion1::getStatus(Completion<Status> onCompletion) {
    const StatusCallV1 call{environment_, baseUrl(), partnersId_};
    dispatchCall(call, decodingCompletion<Status>(ApiItem::create<Status>, std::move(onCompletion)));
}

}  // namespace Tarnwick_API
