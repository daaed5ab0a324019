#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

/// The value of a response's field, or the empty text.
[[nodiscard]] inline std::string_view fieldValue(const HttpResponse& response, std::string_view lowerCaseName) {
    const auto field = response.headers.find(lowerCaseName);
    return field == response.headers.end() ? std::string_view{} : std::string_view{field->second};
}

/// Whether the server can be asked if the response still holds.
[[nodiscard]] inline bool hasValidator(const HttpResponse& response) {
    return !fieldValue(response, "etag").empty() || !fieldValue(response, "last-modified").empty();
}

}  // namespace Tarnwick_API::Platform
