#pragma once

#include <Platform/Http/Transfers/Exchange.hpp>
#include <Platform/Http/Transfers/HeaderList.hpp>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// Sets up a fresh or reset easy handle to send `exchange`, or its current hop. `headers` is filled and, like the
/// exchange, must stay alive and unchanged while the transfer runs. Returns the first fault.
[[nodiscard]] CURLcode setTransferOptions(CURL* handle, const Exchange& exchange, HeaderList& headers);

}  // namespace Tarnwick_API::Platform
