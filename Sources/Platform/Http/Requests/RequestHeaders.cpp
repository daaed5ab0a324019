#include <Platform/Http/Requests/RequestHeaders.hpp>

#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Text/Wiping.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

RequestHeaders::RequestHeaders(HttpHeaders fields) : fields_{std::move(fields)}, fault_{headerFault(fields_)} {
}

RequestHeaders::~RequestHeaders() {
    for (auto& [name, value] : fields_) {
        wipe(value);
    }
}

}  // namespace Tarnwick_API::Platform
