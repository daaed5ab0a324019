#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/DeviceCalls.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <utility>

#include <DecodeAnswer.hpp>

namespace Tarnwick_API {

void ApiVersion1::getDevices(Completion<std::vector<Device>> onCompletion) {
    const DevicesCallV1 call{environment_, partnersId_, baseUrl()};
    dispatchCall(call,
                 decodingCompletion<DevicesCallV1::Answer>(
                     [](const Platform::Bytes& body) { return Platform::JsonDecoder{}.decodeArray<Device>(body); },
                     std::move(onCompletion)));
}

}  // namespace Tarnwick_API
