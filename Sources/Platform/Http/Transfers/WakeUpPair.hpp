#pragma once

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// Keeps programs that the host executes from inheriting the two sockets by which a multi handle is woken: older
/// versions of libcurl forget to. Only for a handle that is new and that nobody else uses yet. A descriptor is changed
/// only when it has proved to be one of them; where none can be proved, all stay as they are.
void keepFromExecutedPrograms(CURLM* multi) noexcept;

}  // namespace Tarnwick_API::Platform
