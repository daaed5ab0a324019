#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <curl/curl.h>

namespace Benchmarks {

/// How the peers reach the service's status, with the very request that the library sends.
struct StatusTarget {
    /// Where the connection goes; the URL names the service itself.
    std::uint16_t port;
    bool isHttp2;
};

/// One easy handle, used again and again.
class ReusedEasyHandle {
public:
    explicit ReusedEasyHandle(StatusTarget target);
    /// Whether the answer came whole with status 200.
    [[nodiscard]] bool requestStatus();

private:
    struct Deleter {
        void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }
        void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
    };
    std::unique_ptr<curl_slist, Deleter> headers_;
    std::unique_ptr<curl_slist, Deleter> connectTo_;
    std::unique_ptr<CURL, Deleter> handle_;
    std::string body_;
};

/// One multi handle that is given `count` easy handles at once. Returns how many answers came whole.
[[nodiscard]] std::size_t requestStatusAtOnce(StatusTarget target, std::size_t count);

}  // namespace Benchmarks
