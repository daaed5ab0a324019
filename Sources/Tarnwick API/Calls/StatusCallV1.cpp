#include <Tarnwick_API/Calls/StatusCallV1.hpp>

namespace Tarnwick_API {

StatusCallV1::StatusCallV1(ApiBase base)
    : ApiCallV1{{Platform::HttpMethod::get, "status", Platform::ParameterEncoding::url}, std::move(base)} {
}

}  // namespace Tarnwick_API
