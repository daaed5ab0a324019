#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Records/Device.hpp>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// Lists the devices on which the account is signed in. A GET whose parameters go as a JSON body, on purpose: that is
/// what the service reads here.
class TARNWICK_API_EXPORT DevicesCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<Device>;
    explicit DevicesCallV1(ApiBase base);
    DevicesCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
        : DevicesCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}} {}
};

/// Removes a device: unfinished, it has no path and names no device. No operation sends it. `LogoutCallV1` with the
/// device's token ends that device's session.
class TARNWICK_API_EXPORT RemoveDeviceCallV1 final : public ApiCallV1 {
public:
    explicit RemoveDeviceCallV1(ApiBase base);
    RemoveDeviceCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
        : RemoveDeviceCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}} {}
};

}  // namespace Tarnwick_API
