#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <curl/curl.h>

namespace Benchmarks {

/// How the stand-in service is reached.
struct ServiceTarget {
    /// Where the connection goes; the URL names the service itself.
    std::uint16_t port;
    bool isHttp2;
};

/// What an application would write on libcurl instead of using the library: a thread that owns a multi handle takes
/// requests from the main thread by a queue, with a new easy handle for each, sends the headers that the library sends,
/// and hands the answers back. It gives libcurl no more requests than can run at once: the library's own limits.
class CurlClient {
public:
    explicit CurlClient(ServiceTarget target);
    CurlClient(const CurlClient&) = delete;
    CurlClient& operator=(const CurlClient&) = delete;
    ~CurlClient();

    struct Answer {
        /// 0 when it did not come whole.
        long status = 0;
        std::string body;
    };

    /// Begins a GET of a path below the service's base.
    void start(const std::string& path);
    /// The next answer, once it is there.
    [[nodiscard]] Answer wait();

private:
    template <auto Delete>
    struct Deleter {
        template <typename Object>
        void operator()(Object* object) const noexcept {
            Delete(object);
        }
    };
    using Lines = std::unique_ptr<curl_slist, Deleter<&curl_slist_free_all>>;

    void run();
    void admit();
    void begin(const std::string& url);
    void finish(const CURLMsg& message);
    [[nodiscard]] static Lines linesOf(const std::vector<std::string>& texts);

    ServiceTarget target_;
    Lines headers_;
    Lines connectTo_;
    std::unique_ptr<CURLM, Deleter<&curl_multi_cleanup>> multi_;
    /// Of the thread alone.
    std::deque<std::string> waiting_;
    std::size_t running_ = 0;

    std::mutex mutex_;
    std::condition_variable answered_;
    std::vector<std::string> started_;
    std::deque<Answer> answers_;
    bool isStopped_ = false;

    std::thread thread_;
};

}  // namespace Benchmarks
