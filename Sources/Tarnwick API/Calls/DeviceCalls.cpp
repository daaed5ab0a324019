#include <Tarnwick_API/Calls/DeviceCalls.hpp>

namespace Tarnwick_API {

using Platform::HttpMethod;
using Platform::ParameterEncoding;

DevicesCallV1::DevicesCallV1(ApiBase base)
    : ApiCallV1{{HttpMethod::get, "users/me/access_tokens", ParameterEncoding::json}, std::move(base)} {
}

RemoveDeviceCallV1::RemoveDeviceCallV1(ApiBase base)
    : ApiCallV1{{HttpMethod::get, "", ParameterEncoding::url}, std::move(base)} {
}

}  // namespace Tarnwick_API
