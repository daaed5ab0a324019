#include <Tarnwick_API/API Versions/ApiVersion1.hpp>

#include <Tarnwick_API/Calls/DeviceCalls.hpp>
#include <Tarnwick_API/Platform/JsonDecoder.hpp>

#include <Tarnwick API/API Versions/DecodeAnswer.hpp>

#include <utility>

namespace Tarnwick_API {

void ApiVersion1::getDevices(Completion<std::vector<Device>> onCompletion) {
    const DevicesCallV1 call{environment_, partnersId_, baseUrl()};
    dispatchCall(call,
                 decodingCompletion<DevicesCallV1::Answer>(
                     [](const Platform::Bytes& body) { return Platform::JsonDecoder{}.decodeArray<Device>(body); },
                     std::move(onCompletion)));
}

}  // namespace Tarnwick_API
