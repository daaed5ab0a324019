#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/OriginQueue.hpp>

#include <atomic>
#include <optional>
#include <string>
#include <unordered_map>

namespace Tarnwick_API::Platform {

/// What the requests of one session share. The configuration part is immutable and free to read on any thread; the
/// origins belong to the I/O thread.
class SessionState {
public:
    /// Throws std::bad_alloc.
    explicit SessionState(HttpSessionConfiguration configuration);

    [[nodiscard]] const HttpSessionConfiguration& configuration() const noexcept { return configuration_; }
    /// Why no request of this session can be sent, if so.
    [[nodiscard]] const std::optional<std::string>& fault() const noexcept { return fault_; }
    [[nodiscard]] curl_slist* connectTo() const noexcept { return connectTo_.get(); }
    [[nodiscard]] bool allowsScheme(std::string_view scheme) const noexcept;
    [[nodiscard]] HostValidation hostValidation(std::string_view host) const;

    /// The session was dropped: nothing of it is to begin any more. Thread: any.
    void drop() noexcept { isDropped_ = true; }
    [[nodiscard]] bool isDropped() const noexcept { return isDropped_; }

    /// Says that the I/O thread is about to get an exchange of this session. Thread: any.
    void noteTransfer() noexcept { hadTransfers_ = true; }
    [[nodiscard]] bool hadTransfers() const noexcept { return hadTransfers_; }

    /// Thread: the I/O thread.
    [[nodiscard]] OriginQueue& origin(const Url& url);

    /// Takes all requests that wait. Thread: the I/O thread.
    [[nodiscard]] std::vector<Exchange> takeWaiting();

private:
    HttpSessionConfiguration configuration_;
    std::optional<std::string> fault_;
    CurlList connectTo_;
    std::unordered_map<std::string, OriginQueue> origins_;
    std::atomic<bool> isDropped_ = false;
    std::atomic<bool> hadTransfers_ = false;
};

/// What becomes of the exchanges of a session that was dropped.
[[nodiscard]] HttpError sessionDropped();

}  // namespace Tarnwick_API::Platform
