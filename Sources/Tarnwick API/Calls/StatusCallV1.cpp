#include <Tarnwick_API/Calls/StatusCallV1.hpp>

#include <utility>

namespace Tarnwick_API {

StatusCallV1::StatusCallV1(ApiEnvironment environment, std::string baseUrl, std::int64_t partnersId)
    : ApiCallV1{Platform::HttpMethod::get,        "status",           std::nullopt, environment,
                Platform::ParameterEncoding::url, std::move(baseUrl), partnersId} {
}

}  // namespace Tarnwick_API
