#pragma once

#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/OriginQueue.hpp>

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// What the exchanges of one `CurlTransport` share. The configuration is immutable and free to read on any thread; the
/// queues belong to the I/O thread.
class TransferGroup {
public:
    /// Throws std::bad_alloc.
    explicit TransferGroup(std::shared_ptr<const HttpSessionConfiguration> configuration);

    [[nodiscard]] const HttpSessionConfiguration& configuration() const noexcept { return *configuration_; }
    /// The configuration's rules as libcurl reads them; null without any.
    [[nodiscard]] curl_slist* connectTo() const noexcept { return connectTo_.get(); }
    [[nodiscard]] bool allowsScheme(std::string_view scheme) const noexcept;
    [[nodiscard]] HostValidation hostValidation(std::string_view host) const;
    /// As libcurl reads them; null for a host without any.
    [[nodiscard]] const std::string* pinnedPublicKeys(std::string_view host) const;

    /// The transport was dropped: nothing of it is to begin any more. Thread: any.
    void drop() noexcept { isDropped_ = true; }
    [[nodiscard]] bool isDropped() const noexcept { return isDropped_; }

    /// The queue of the origin that `url` belongs to. Thread: the I/O thread.
    [[nodiscard]] OriginQueue& originQueue(const Url& url);

    /// Takes all exchanges that wait. Thread: the I/O thread.
    [[nodiscard]] std::vector<Exchange> takeWaiting();

private:
    std::shared_ptr<const HttpSessionConfiguration> configuration_;
    CurlList connectTo_;
    std::unordered_map<std::string, OriginQueue> originQueues_;
    std::atomic<bool> isDropped_ = false;
};

}  // namespace Tarnwick_API::Platform
