#include "Ending.hpp"

#include "FaultOrders.hpp"

namespace Benchmarks {

Ending endingOf(const std::optional<Tarnwick_API::ApiError>& error) {
    using namespace Tarnwick_API;
    if (!error) {
        return Ending::undecodable;
    }
    if (error->as<CancellationError>() != nullptr) {
        return Ending::stopped;
    }
    if (const auto* const response = error->as<ResponseError>()) {
        if (response->kind() == ResponseError::Kind::notReachable) {
            return Ending::notReachable;
        }
        if (response->responseText() == FaultOrders::refusal) {
            return Ending::refused;
        }
        if (response->responseText().find("nghttpx") != std::string::npos) {
            return Ending::proxyError;
        }
    }
    return Ending::wrong;
}

}  // namespace Benchmarks
