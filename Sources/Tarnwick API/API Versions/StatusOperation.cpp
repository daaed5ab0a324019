#include <Tarnwick_API/API Versions/ApiVersion1.hpp>

#include <Tarnwick_API/Calls/StatusCallV1.hpp>

#include <Tarnwick API/API Versions/DecodeAnswer.hpp>

#include <utility>

namespace Tarnwick_API {

void ApiVersion1::getStatus(Completion<Status> onCompletion) {
    const StatusCallV1 call{environment_, baseUrl(), partnersId_};
    dispatchCall(call, decodingCompletion<Status>(ApiItem::create<Status>, std::move(onCompletion)));
}

}  // namespace Tarnwick_API
