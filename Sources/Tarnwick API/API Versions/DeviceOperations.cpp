#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/DeviceCalls.hpp>

#include <utility>

#include "DecodeAnswer.hpp"

namespace Tarnwick_API {

void ApiVersion1::getDevices(Completion<std::vector<Device>> onCompletion) {
    static constexpr Operation operation{"getDevices(onCompletion:)"};
    dispatchCall(DevicesCallV1{apiBase()},
                 decodingCompletion<DevicesCallV1::Answer, operation, decodeRecords<Device>>(std::move(onCompletion)));
}

}  // namespace Tarnwick_API
