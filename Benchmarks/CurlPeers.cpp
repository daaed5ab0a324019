#include "CurlPeers.hpp"

#include "ServiceProcess.hpp"

#include <vector>

namespace Benchmarks {

namespace {

constexpr long ok = 200;
constexpr long connectionsPerHost = 6;

std::size_t appendBody(const char* bytes, std::size_t size, std::size_t count, void* body) {
    static_cast<std::string*>(body)->append(bytes, size * count);
    return size * count;
}

curl_slist* makeHeaders() {
    curl_slist* list = nullptr;
    for (const auto& line :
         {std::string{"Accept: application/json"}, std::string{"Accept-Language: en;q=1.0"},
          std::string{"Authorization: OAuth oauth_version=\"1.0\", "
                      "oauth_signature_method=\"PLAINTEXT\", "
                      "oauth_consumer_key=\"tarnwick-demo-key\", "
                      "oauth_signature=\"tarnwick-demo-secret%26\""},
          std::string{"Content-Type: application/json"}, "Host: " + ServiceProcess::shared().host()}) {
        list = curl_slist_append(list, line.c_str());
    }
    return list;
}

curl_slist* makeConnectTo(StatusTarget target) {
    return curl_slist_append(nullptr,
                             (ServiceProcess::shared().host() + ":127.0.0.1:" + std::to_string(target.port)).c_str());
}

void setUp(CURL* handle, StatusTarget target, curl_slist* headers, curl_slist* connectTo, std::string& body) {
    const auto& service = ServiceProcess::shared();
    const auto url = "https://" + service.host() + "/vb/status?language=en&os=mac&partnersId=7&region=US&version=7.x";
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(handle, CURLOPT_CONNECT_TO, connectTo);
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "gzip");
    curl_easy_setopt(handle, CURLOPT_CAINFO, service.caFile().c_str());
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION,
                     static_cast<long>(target.isHttp2 ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(handle, CURLOPT_PIPEWAIT, target.isHttp2 ? 1L : 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &appendBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &body);
}

}  // namespace

ReusedEasyHandle::ReusedEasyHandle(StatusTarget target)
    : headers_{makeHeaders()}, connectTo_{makeConnectTo(target)}, handle_{curl_easy_init()} {
    setUp(handle_.get(), target, headers_.get(), connectTo_.get(), body_);
}

bool ReusedEasyHandle::requestStatus() {
    body_.clear();
    long status = 0;
    return curl_easy_perform(handle_.get()) == CURLE_OK &&
           curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status) == CURLE_OK && status == ok;
}

std::size_t requestStatusAtOnce(StatusTarget target, std::size_t count) {
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers{makeHeaders(), &curl_slist_free_all};
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> connectTo{makeConnectTo(target),
                                                                                &curl_slist_free_all};
    const std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi{curl_multi_init(), &curl_multi_cleanup};
    curl_multi_setopt(multi.get(), CURLMOPT_MAX_HOST_CONNECTIONS, target.isHttp2 ? 1L : connectionsPerHost);
    std::vector<std::string> bodies(count);
    std::size_t succeeded = 0;
    for (auto& body : bodies) {
        CURL* const handle = curl_easy_init();
        setUp(handle, target, headers.get(), connectTo.get(), body);
        curl_multi_add_handle(multi.get(), handle);
    }
    int running = 1;
    while (running > 0) {
        curl_multi_perform(multi.get(), &running);
        int left = 0;
        while (const auto* const message = curl_multi_info_read(multi.get(), &left)) {
            long status = 0;
            curl_easy_getinfo(message->easy_handle, CURLINFO_RESPONSE_CODE, &status);
            succeeded += message->data.result == CURLE_OK && status == ok ? 1U : 0U;
            CURL* const handle = message->easy_handle;
            curl_multi_remove_handle(multi.get(), handle);
            curl_easy_cleanup(handle);
        }
        if (running > 0) {
            constexpr int longestWait = 1000;
            curl_multi_poll(multi.get(), nullptr, 0, longestWait, nullptr);
        }
    }
    return succeeded;
}

}  // namespace Benchmarks
