#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// What a transfer's result means to a session's user.
[[nodiscard]] HttpError::Kind errorKind(CURLcode code) noexcept;

/// The error of the transfer that ended on `handle` with `code`. Its description is made of fixed texts and numbers:
/// libcurl's own message may quote what the server sent.
[[nodiscard]] HttpError transferError(CURL* handle, CURLcode code);

/// The error of a transfer that can't begin, as libcurl refused `option` with `code`.
[[nodiscard]] HttpError optionError(CURLoption option, CURLcode code);

}  // namespace Tarnwick_API::Platform
