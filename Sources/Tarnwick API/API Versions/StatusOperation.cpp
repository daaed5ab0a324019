#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/StatusCallV1.hpp>

#include <utility>

#include "DecodeAnswer.hpp"

namespace Tarnwick_API {

void ApiVersion1::getStatus(Completion<Status> onCompletion) {
    dispatchCall(StatusCallV1{apiBase()},
                 decodingCompletion<StatusCallV1::Answer>("getStatus(onCompletion:)", decodeRecord<Status>,
                                                          std::move(onCompletion)));
}

}  // namespace Tarnwick_API
