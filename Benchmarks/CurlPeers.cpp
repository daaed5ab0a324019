#include "CurlPeers.hpp"

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>

#include "ServiceProcess.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Benchmarks {

namespace {

constexpr std::size_t connectionsPerHost = 6;
constexpr std::size_t streamsPerConnection = 100;

/// One request under way.
struct Transfer {
    CURL* handle;
    CurlClient::Answer answer;
};

std::size_t appendBody(const char* bytes, std::size_t size, std::size_t count, void* transfer) {
    auto& [handle, answer] = *static_cast<Transfer*>(transfer);
    if (answer.body.empty()) {
        curl_off_t length = 0;
        curl_easy_getinfo(handle, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        answer.body.reserve(static_cast<std::size_t>(std::max<curl_off_t>(length, 0)) +
                            Tarnwick_API::Platform::JsonDocument::padding);
    }
    answer.body.append(bytes, size * count);
    return size * count;
}

std::vector<std::string> headers() {
    std::vector<std::string> lines{"Accept: application/json",
                                   "Authorization: OAuth oauth_version=\"1.0\", oauth_signature_method=\"PLAINTEXT\", "
                                   "oauth_consumer_key=\"tarnwick-demo-key\", "
                                   "oauth_signature=\"tarnwick-demo-secret%26\"",
                                   "Content-Type: application/json", "Host: " + ServiceProcess::shared().host()};
    for (const auto& [name, value] : Tarnwick_API::Platform::defaultHttpHeaders()) {
        lines.push_back(std::string{name}.append(": ").append(value));
    }
    return lines;
}

}  // namespace

CurlClient::CurlClient(ServiceTarget target)
    : target_{target},
      headers_{linesOf(headers())},
      connectTo_{linesOf({ServiceProcess::shared().host() + ":127.0.0.1:" + std::to_string(target.port)})},
      multi_{curl_multi_init()},
      thread_{[this] { run(); }} {
}

CurlClient::~CurlClient() {
    {
        const std::lock_guard lock{mutex_};
        isStopped_ = true;
    }
    curl_multi_wakeup(multi_.get());
    thread_.join();
}

void CurlClient::start(const std::string& path) {
    auto url = "https://" + ServiceProcess::shared().host() + "/vb/" + path;
    {
        const std::lock_guard lock{mutex_};
        started_.push_back(std::move(url));
    }
    curl_multi_wakeup(multi_.get());
}

CurlClient::Answer CurlClient::wait() {
    std::unique_lock lock{mutex_};
    answered_.wait(lock, [this] { return !answers_.empty(); });
    auto answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
}

void CurlClient::run() {
    while (true) {
        {
            const std::lock_guard lock{mutex_};
            if (isStopped_) {
                return;
            }
            waiting_.insert(waiting_.end(), std::make_move_iterator(started_.begin()),
                            std::make_move_iterator(started_.end()));
            started_.clear();
        }
        admit();
        int stillRunning = 0;
        curl_multi_perform(multi_.get(), &stillRunning);
        int left = 0;
        while (const auto* const message = curl_multi_info_read(multi_.get(), &left)) {
            finish(*message);
        }
        admit();
        constexpr int longestWait = 1000;
        curl_multi_poll(multi_.get(), nullptr, 0, longestWait, nullptr);
    }
}

void CurlClient::admit() {
    while (!waiting_.empty() && running_ < (target_.isHttp2 ? streamsPerConnection : connectionsPerHost)) {
        begin(waiting_.front());
        waiting_.pop_front();
    }
}

void CurlClient::begin(const std::string& url) {
    CURL* const handle = curl_easy_init();
    auto transfer = std::make_unique<Transfer>(Transfer{handle, {}});
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers_.get());
    curl_easy_setopt(handle, CURLOPT_CONNECT_TO, connectTo_.get());
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "gzip");
    curl_easy_setopt(handle, CURLOPT_CAINFO, ServiceProcess::shared().caFile().c_str());
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION,
                     static_cast<long>(target_.isHttp2 ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(handle, CURLOPT_PIPEWAIT, target_.isHttp2 ? 1L : 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &appendBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, transfer.get());
    curl_easy_setopt(handle, CURLOPT_PRIVATE, transfer.release());
    curl_multi_add_handle(multi_.get(), handle);
    ++running_;
}

void CurlClient::finish(const CURLMsg& message) {
    CURL* const handle = message.easy_handle;
    Transfer* kept = nullptr;
    curl_easy_getinfo(handle, CURLINFO_PRIVATE, &kept);
    const std::unique_ptr<Transfer> transfer{kept};
    if (message.data.result == CURLE_OK) {
        curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &transfer->answer.status);
    }
    {
        const std::lock_guard lock{mutex_};
        answers_.push_back(std::move(transfer->answer));
    }
    answered_.notify_one();
    // What follows holds no answer up.
    curl_multi_remove_handle(multi_.get(), handle);
    curl_easy_cleanup(handle);
    --running_;
}

CurlClient::Lines CurlClient::linesOf(const std::vector<std::string>& texts) {
    curl_slist* lines = nullptr;
    for (const auto& text : texts) {
        lines = curl_slist_append(lines, text.c_str());
    }
    return Lines{lines};
}

}  // namespace Benchmarks
