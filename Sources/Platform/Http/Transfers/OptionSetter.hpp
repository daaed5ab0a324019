#pragma once

#include <Platform/Http/Transfers/TransferError.hpp>

#include <optional>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// Sets options of an easy handle, and keeps the error of the first that can't be set.
class OptionSetter {
public:
    explicit OptionSetter(CURL* handle) noexcept : handle_{handle} {}

    template <typename Value>
    void operator()(CURLoption option, Value value) {
        const auto code = curl_easy_setopt(handle_, option, value);
        if (code != CURLE_OK && !error_) {
            error_ = optionError(option, code);
        }
    }

    [[nodiscard]] const std::optional<HttpError>& error() const noexcept { return error_; }

private:
    CURL* handle_;
    std::optional<HttpError> error_;
};

}  // namespace Tarnwick_API::Platform
