#include <Tarnwick_API/Calls/DeviceCalls.hpp>

#include <utility>

namespace Tarnwick_API {

DevicesCallV1::DevicesCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
    : ApiCallV1{Platform::HttpMethod::get,         "users/me/access_tokens", std::nullopt, environment,
                Platform::ParameterEncoding::json, std::move(baseUrl),       partnersId} {
}

RemoveDeviceCallV1::RemoveDeviceCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
    : ApiCallV1{Platform::HttpMethod::get, "",        std::nullopt, environment, Platform::ParameterEncoding::url,
                std::move(baseUrl),        partnersId} {
}

}  // namespace Tarnwick_API
