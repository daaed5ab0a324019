#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <string_view>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// The error of the transfer that ended on `handle` with `code` and libcurl's own `message`. Its description is made of
/// fixed texts and numbers: the message may quote what the server sent.
[[nodiscard]] HttpError transferError(CURL* handle, CURLcode code, std::string_view message);

/// The error of a transfer that can't begin, as libcurl refused `option` with `code`.
[[nodiscard]] HttpError optionError(CURLoption option, CURLcode code);

}  // namespace Tarnwick_API::Platform
