#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/StatusCallV1.hpp>

#include <utility>

#include "DecodeAnswer.hpp"
#include "LastStatus.hpp"

namespace Tarnwick_API {

void ApiVersion1::getStatus(Completion<Status> onCompletion) {
    static constexpr Operation operation{"getStatus(onCompletion:)"};
    dispatchCall(StatusCallV1{apiBase()}, decodingCompletion<StatusCallV1::Answer, operation>(
                                              [this](const Platform::Bytes& text) { return lastStatus_->decode(text); },
                                              std::move(onCompletion)));
}

}  // namespace Tarnwick_API
