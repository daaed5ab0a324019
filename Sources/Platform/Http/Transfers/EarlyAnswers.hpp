#pragma once

#include <vector>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// Makes libcurl see the end of answers over HTTP/2 that came before their request was out. There the request's last
/// frame closes the stream, after which libcurl looks for the end only when the network brings more. Thread: the I/O
/// thread.
class EarlyAnswers {
public:
    /// The answer on `handle` may have ended, unseen, with what has just gone out.
    void watch(CURL* handle);
    void forget(CURL* handle) noexcept;
    /// Whether libcurl has to be run once more before anything is waited for.
    [[nodiscard]] bool areWatched() const noexcept { return !watched_.empty(); }

    /// To be called whenever libcurl reports on any handle. Has it look at those watched, as what it is told to look at
    /// is the connection, and the next handle that shares it takes the look.
    void reported(CURL* handle) noexcept;

private:
    struct Watched {
        CURL* handle;
        /// Reports on the handle itself until libcurl has surely looked.
        int reportsLeft;
    };
    std::vector<Watched> watched_;
};

}  // namespace Tarnwick_API::Platform
