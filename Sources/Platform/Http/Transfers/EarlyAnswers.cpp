#include <Platform/Http/Transfers/EarlyAnswers.hpp>

namespace Tarnwick_API::Platform {

void EarlyAnswers::watch(CURL* handle) {
    // libcurl reports once or twice each time it works on a handle; the next time it looks.
    constexpr int reports = 4;
    forget(handle);
    watched_.push_back({handle, reports});
}

void EarlyAnswers::forget(CURL* handle) noexcept {
    std::erase_if(watched_, [handle](const auto& watched) { return watched.handle == handle; });
}

void EarlyAnswers::reported(CURL* handle) noexcept {
    if (watched_.empty()) {
        return;
    }
    std::erase_if(watched_, [handle](auto& watched) { return watched.handle == handle && --watched.reportsLeft == 0; });
    for (const auto& watched : watched_) {
        // What makes it look is the end of a pause.
        curl_easy_pause(watched.handle, CURLPAUSE_RECV);
        curl_easy_pause(watched.handle, CURLPAUSE_CONT);
    }
}

}  // namespace Tarnwick_API::Platform
