#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/StatusCallV1.hpp>

#include <utility>

#include "DecodeAnswer.hpp"

namespace Tarnwick_API {

void ApiVersion1::getStatus(Completion<Status> onCompletion) {
    static constexpr Operation operation{"getStatus(onCompletion:)"};
    dispatchCall(StatusCallV1{apiBase()},
                 decodingCompletion<StatusCallV1::Answer, decodeRecord<Status>>(operation, std::move(onCompletion)));
}

}  // namespace Tarnwick_API
