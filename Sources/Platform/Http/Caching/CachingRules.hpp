#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Caching/CacheControl.hpp>
#include <Platform/Http/Caching/RequestFields.hpp>

namespace Tarnwick_API::Platform {

/// The directives that a request gives caches.
[[nodiscard]] CacheControl requestDirectives(const RequestFields& fields);

/// Whether a cache may answer the request, and store the response to it.
[[nodiscard]] bool mayUseCache(const HttpRequest& request, const RequestFields& fields);

/// Whether a response to such a request may be stored.
[[nodiscard]] bool mayBeStored(const HttpResponse& response);

/// Whether requests with this method leave the server as it is (RFC 9110). Others invalidate what is stored.
[[nodiscard]] bool isSafe(HttpMethod method) noexcept;

}  // namespace Tarnwick_API::Platform
