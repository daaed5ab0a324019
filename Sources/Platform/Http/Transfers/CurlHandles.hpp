#pragma once

#include <memory>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

struct CurlEasyDelete {
    void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }
};
using CurlEasy = std::unique_ptr<CURL, CurlEasyDelete>;

struct CurlMultiDelete {
    void operator()(CURLM* handle) const noexcept { curl_multi_cleanup(handle); }
};
using CurlMulti = std::unique_ptr<CURLM, CurlMultiDelete>;

struct CurlShareDelete {
    void operator()(CURLSH* handle) const noexcept { curl_share_cleanup(handle); }
};
using CurlShare = std::unique_ptr<CURLSH, CurlShareDelete>;

struct CurlListDelete {
    void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
};
using CurlList = std::unique_ptr<curl_slist, CurlListDelete>;

}  // namespace Tarnwick_API::Platform
