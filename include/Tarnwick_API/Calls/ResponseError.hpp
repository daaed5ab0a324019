#pragma once

#include <Tarnwick_API/Export.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// What an HTTP answer, or its absence, says has gone wrong.
class TARNWICK_API_EXPORT ResponseError {
public:
    /// The kinds; the function of the same name makes one and says when it comes.
    enum class Kind { genericError, unknownError, badRequest, unauthorized, forbidden, notFound, notReachable };

    /// Any refusal without a case of its own; `responseText` is the answer's body.
    [[nodiscard]] static ResponseError genericError(std::string responseText) {
        return ResponseError{Kind::genericError, std::move(responseText)};
    }
    /// A refusal whose body is missing or no text.
    [[nodiscard]] static ResponseError unknownError() { return ResponseError{Kind::unknownError}; }
    /// The statuses 400, 401, 403 and 404.
    /// @{
    [[nodiscard]] static ResponseError badRequest() { return ResponseError{Kind::badRequest}; }
    [[nodiscard]] static ResponseError unauthorized() { return ResponseError{Kind::unauthorized}; }
    [[nodiscard]] static ResponseError forbidden() { return ResponseError{Kind::forbidden}; }
    [[nodiscard]] static ResponseError notFound() { return ResponseError{Kind::notFound}; }
    /// @}
    /// No answer: no way to the service, or every attempt failed.
    [[nodiscard]] static ResponseError notReachable() { return ResponseError{Kind::notReachable}; }

    /// The error of an answer whose status lies outside 200 to 299 and is not 0.
    [[nodiscard]] static ResponseError fromAnswer(std::int64_t status, const std::optional<std::string>& body);

    [[nodiscard]] Kind kind() const noexcept { return kind_; }

    /// The service's own words when the kind is `genericError`, else empty.
    [[nodiscard]] const std::string& responseText() const noexcept { return responseText_; }

    /// A fixed English sentence for each kind; never the service's words.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

    friend bool operator==(const ResponseError&, const ResponseError&) = default;

private:
    explicit ResponseError(Kind kind, std::string responseText = {})
        : kind_{kind}, responseText_{std::move(responseText)} {}

    Kind kind_;
    std::string responseText_;
};

}  // namespace Tarnwick_API
