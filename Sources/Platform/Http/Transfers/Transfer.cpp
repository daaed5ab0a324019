#include <Platform/Http/Transfers/Transfer.hpp>

#include <Platform/Http/Transfers/OptionSetter.hpp>
#include <Platform/Http/Transfers/TransferError.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>
#include <Platform/Http/Transfers/TransferOptions.hpp>

#include <cstdint>
#include <exception>
#include <new>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

/// 0 also for what libcurl doesn't know.
curl_off_t transferInfo(CURL* handle, CURLINFO info) {
    curl_off_t value = 0;
    return curl_easy_getinfo(handle, info, &value) == CURLE_OK ? value : 0;
}

}  // namespace

Transfer::Transfer(CURLSH* share, const Time& now) : handle_{curl_easy_init()}, now_{now} {
    // The share survives the reset between two transfers.
    if (!handle_ || curl_easy_setopt(handle_.get(), CURLOPT_SHARE, share) != CURLE_OK) {
        throw std::bad_alloc{};
    }
}

Transfer* Transfer::on(CURL* handle) noexcept {
    Transfer* transfer = nullptr;
    return curl_easy_getinfo(handle, CURLINFO_PRIVATE, &transfer) == CURLE_OK ? transfer : nullptr;
}

std::optional<HttpError> Transfer::begin(Exchange exchange, OriginQueue& queue) {
    exchange_ = std::move(exchange);
    queue_ = &queue;
    body_.begin(exchange_.group->configuration().maximumBodySize);
    lastProgress_ = now_;
    OptionSetter set{handle_.get()};
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::onBody);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_XFERINFOFUNCTION, &Transfer::onProgress);
    set(CURLOPT_XFERINFODATA, this);
    set(CURLOPT_NOPROGRESS, 0L);
    setTransferOptions(set, exchange_, headers_);
    return set.error();
}

Transfer::Time Transfer::deadline() const noexcept {
    return lastProgress_ + exchange_.group->configuration().idleTimeout;
}

bool Transfer::isMultiplexed() const {
    long version = 0;
    return curl_easy_getinfo(handle_.get(), CURLINFO_HTTP_VERSION, &version) == CURLE_OK &&
           version >= CURL_HTTP_VERSION_2_0;
}

std::unique_ptr<Hop> Transfer::redirect() const {
    const char* location = nullptr;
    if (!headParser_.isComplete() || curl_easy_getinfo(handle_.get(), CURLINFO_REDIRECT_URL, &location) != CURLE_OK ||
        location == nullptr) {
        return nullptr;
    }
    const auto* const current = exchange_.hop.get();
    auto next = nextHop(*exchange_.request, current, headParser_.status(), location);
    if (next) {
        next->spent = std::chrono::microseconds{transferInfo(handle_.get(), CURLINFO_TOTAL_TIME_T)};
        if (current != nullptr) {
            next->spent += current->spent;
        }
    }
    return next;
}

Exchange Transfer::end() {
    curl_easy_reset(handle_.get());
    queue_ = nullptr;
    static_cast<void>(headParser_.take());
    static_cast<void>(body_.take());
    isTooLarge_ = false;
    bytesMoved_ = 0;
    return std::exchange(exchange_, {});
}

HttpAnswer Transfer::takeAnswer(CURLcode code) {
    HttpAnswer answer;
    if (isTooLarge_) {
        answer.error = HttpError{HttpError::Kind::tooLarge, "the body passes the session's limit"};
    } else if (code != CURLE_OK) {
        answer.error = transferError(handle_.get(), code);
    } else if (!headParser_.isComplete()) {
        // libcurl calls this a success.
        answer.error = HttpError{HttpError::Kind::connectionLost, "the connection was closed within the header"};
    }
    constexpr std::int64_t noContent = 204;
    constexpr std::int64_t resetContent = 205;
    const bool hasNoBody = isTooLarge_ || headParser_.status() == noContent || headParser_.status() == resetContent;
    answer.body = hasNoBody ? Bytes{} : body_.take();
    if (headParser_.isComplete()) {
        answer.response = headParser_.take();
    }
    return answer;
}

std::size_t Transfer::onHeader(const char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept {
    auto& self = *static_cast<Transfer*>(transfer);
    try {
        self.lastProgress_ = self.now_;
        self.headParser_.add({bytes, size * count});
        return size * count;
    } catch (const std::exception&) {
        return 0;
    }
}

std::size_t Transfer::onBody(const char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept {
    try {
        return static_cast<Transfer*>(transfer)->takeBody({bytes, size * count}) ? size * count : 0;
    } catch (const std::exception&) {
        return 0;
    }
}

bool Transfer::takeBody(std::string_view bytes) {
    if (body_.isEmpty()) {
        const auto announced = transferInfo(handle_.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T);
        if (announced > 0) {
            body_.expect(static_cast<std::size_t>(announced));
        }
    }
    isTooLarge_ = !body_.append(bytes);
    return !isTooLarge_;
}

int Transfer::onProgress(void* transfer, curl_off_t /*downloadTotal*/, curl_off_t downloaded,
                         curl_off_t /*uploadTotal*/, curl_off_t uploaded) noexcept {
    auto& self = *static_cast<Transfer*>(transfer);
    if (downloaded + uploaded != self.bytesMoved_) {
        self.bytesMoved_ = downloaded + uploaded;
        self.lastProgress_ = self.now_;
    }
    return 0;
}

}  // namespace Tarnwick_API::Platform
