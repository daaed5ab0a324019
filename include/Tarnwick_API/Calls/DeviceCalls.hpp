#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Records/Device.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace Tarnwick_API {

/// Lists the devices on which the account is signed in. A GET whose parameters go as a JSON body.
class DevicesCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<Device>;
    DevicesCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl);
};

/// Removes a device: unfinished, it has no path and names no device. No operation sends it.
class RemoveDeviceCallV1 final : public ApiCallV1 {
public:
    RemoveDeviceCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl);
};

}  // namespace Tarnwick_API
