#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Records/Status.hpp>

#include <cstdint>
#include <string>
#include <utility>

namespace Tarnwick_API {

/// Reads the service's status. The order of the second constructor's arguments is this call's own, on purpose.
class TARNWICK_API_EXPORT StatusCallV1 final : public ApiCallV1 {
public:
    using Answer = Status;
    explicit StatusCallV1(ApiBase base);
    StatusCallV1(ApiEnvironment environment, std::string baseUrl, std::int64_t partnersId)
        : StatusCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}} {}
    using ApiCallV1::setEncoding;
    using ApiCallV1::setEnvironment;
};

}  // namespace Tarnwick_API
