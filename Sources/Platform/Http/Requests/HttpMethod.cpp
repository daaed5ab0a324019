#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

std::string_view name(HttpMethod method) noexcept {
    switch (method) {
        case HttpMethod::options:
            return "OPTIONS";
        case HttpMethod::get:
            return "GET";
        case HttpMethod::head:
            return "HEAD";
        case HttpMethod::post:
            return "POST";
        case HttpMethod::put:
            return "PUT";
        case HttpMethod::patch:
            return "PATCH";
        case HttpMethod::delete_:
            return "DELETE";
        case HttpMethod::trace:
            return "TRACE";
        case HttpMethod::connect:
            return "CONNECT";
    }
    return {};
}

}  // namespace Tarnwick_API::Platform
