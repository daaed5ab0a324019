#pragma once

#include <Platform/Http/Exchange.hpp>
#include <Platform/Http/HeaderList.hpp>

#include <curl/curl.h>

namespace Platform {

/// Sets up a fresh or reset easy handle to send `exchange`, or its current hop. `headers` is filled and, like the
/// exchange, must stay alive and unchanged while the transfer runs. Returns the first fault.
[[nodiscard]] CURLcode setTransferOptions(CURL* handle, const Exchange& exchange, HeaderList& headers);

}  // namespace Platform
