#include <Tarnwick_API/Calls/HttpStatus.hpp>

#include <algorithm>
#include <array>

namespace Tarnwick_API {

template <std::same_as<HttpStatus> Enumeration>
std::optional<Enumeration> fromRawValue(std::int64_t code) noexcept {
    constexpr std::array all{HttpStatus::ok,
                             HttpStatus::created,
                             HttpStatus::noContent,
                             HttpStatus::notModified,
                             HttpStatus::badRequest,
                             HttpStatus::unauthorized,
                             HttpStatus::forbidden,
                             HttpStatus::notFound,
                             HttpStatus::requestTimeout,
                             HttpStatus::tooManyRequests,
                             HttpStatus::serverError};
    const auto* const found =
        std::find_if(all.begin(), all.end(), [code](HttpStatus status) { return rawValue(status) == code; });
    return found == all.end() ? std::nullopt : std::optional{*found};
}
template std::optional<HttpStatus> fromRawValue<HttpStatus>(std::int64_t) noexcept;

}  // namespace Tarnwick_API
