#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Records/Status.hpp>

#include <cstdint>
#include <string>

namespace Tarnwick_API {

/// Reads the service's status. Mind the order of the constructor's arguments, which is this call's own.
class StatusCallV1 final : public ApiCallV1 {
public:
    using Answer = Status;
    StatusCallV1(ApiEnvironment environment, std::string baseUrl, std::int64_t partnersId);
    using ApiCallV1::setEncoding;
    using ApiCallV1::setEnvironment;
};

}  // namespace Tarnwick_API
