#pragma once

#include <Platform/Http/Transfers/BodyBuffer.hpp>
#include <Platform/Http/Transfers/BodyFraming.hpp>
#include <Platform/Http/Transfers/ConnectionSockets.hpp>
#include <Platform/Http/Transfers/ContentDecoder.hpp>
#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/EarlyAnswers.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>
#include <Platform/Http/Transfers/HeaderList.hpp>
#include <Platform/Http/Transfers/ResponseHeadParser.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

class OriginQueue;

/// One easy handle and what it needs to run one hop of an exchange. Thread: the I/O thread.
class Transfer {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// `share` keeps the TLS sessions; `now` is the I/O thread's clock, read where bytes arrive. All must outlive this.
    /// Throws std::bad_alloc.
    Transfer(CURLSH* share, ConnectionSockets& sockets, EarlyAnswers& earlyAnswers, const Time& now);

    /// The transfer that runs on `handle`; null when none does.
    [[nodiscard]] static Transfer* on(CURL* handle) noexcept;

    /// Takes over `exchange`, which `queue` has admitted, and sets up the handle for it. Returns why that can't be.
    [[nodiscard]] std::optional<HttpError> begin(Exchange exchange, OriginQueue& queue);

    [[nodiscard]] CURL* handle() const noexcept { return handle_.get(); }
    [[nodiscard]] const Exchange& exchange() const noexcept { return exchange_; }
    [[nodiscard]] OriginQueue& queue() const noexcept { return *queue_; }

    /// When the exchange ends for want of progress, or its grace does, unless bytes come or go before.
    [[nodiscard]] Time deadline() const noexcept;

    /// Whether an answer came, and over a connection for many requests at once.
    [[nodiscard]] bool hasAnswer() const noexcept { return headParser_.isComplete(); }
    [[nodiscard]] bool isMultiplexed() const;

    /// Whether it was ended before its request went out, as the connection kept for it was spoilt, which is closed, or
    /// retired.
    [[nodiscard]] bool hasMetSpoiltConnection() const noexcept { return refusal_ == Refusal::spoiltConnection; }
    [[nodiscard]] bool hasMetRetiredConnection() const noexcept { return refusal_ == Refusal::retiredConnection; }

    /// The connection that the request went out on; null before.
    [[nodiscard]] Connection* connection() const noexcept { return connection_.get(); }

    /// When bytes last came or went, or else it began.
    [[nodiscard]] Time lastProgress() const noexcept { return lastProgress_; }

    /// The network has changed: it is to show within the session's grace that it still gets on.
    void suspect() noexcept;
    void trust() noexcept { suspectedAt_.reset(); }
    /// When that began.
    [[nodiscard]] const std::optional<Time>& suspectedAt() const noexcept { return suspectedAt_; }

    /// Gives the transfer up, before `takeAnswer`: its connection is that of a network left behind, or has been silent
    /// since the network changed.
    void giveUpAfterChange(bool isLeftBehind) noexcept {
        refusal_ = isLeftBehind ? Refusal::networkLeft : Refusal::silentSinceChange;
    }

    /// The redirect that the answer asks for, or null.
    [[nodiscard]] std::unique_ptr<Hop> redirect() const;

    /// Gives the exchange back and forgets the rest, ready for `begin` where a handle may be used again.
    [[nodiscard]] Exchange end();

    /// What became of the transfer, which libcurl ended with `code`. Once, and before `end`.
    [[nodiscard]] TransportResult takeAnswer(CURLcode code);

    /// Where the I/O thread keeps this among its running transfers.
    std::size_t position = 0;

private:
    /// What this end does not let happen.
    enum class Refusal {
        none,
        largeHead,
        largeBody,
        badAnswer,
        noMemory,
        spoiltConnection,
        retiredConnection,
        secondSending,
        otherName,
        networkLeft,
        silentSinceChange,
    };

    static int onReadyToSend(void* transfer, char* remoteAddress, char* localAddress, int remotePort,
                             int localPort) noexcept;
    static std::size_t onHeader(const char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept;
    static std::size_t onBody(const char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept;
    static int onProgress(void* transfer, curl_off_t downloadTotal, curl_off_t downloaded, curl_off_t uploadTotal,
                          curl_off_t uploaded) noexcept;

    [[nodiscard]] bool isPeerTrusted() const;
    [[nodiscard]] Refusal judgeSending(const ConnectionSockets::Ends& ends);
    void takeConnection(std::shared_ptr<Connection> connection, bool isNew);
    void releaseConnection() noexcept;
    [[nodiscard]] bool takeHeader(std::string_view line);
    [[nodiscard]] bool takeFraming();
    void noteProtocol(std::string_view statusLine);
    [[nodiscard]] bool takeBody(std::string_view bytes);
    /// Returns false, for a callback to hand on.
    bool refuse(Refusal refusal, std::string_view fault = {}) noexcept;
    [[nodiscard]] bool mayHaveEndedUnseen(curl_off_t uploaded);
    [[nodiscard]] bool hasNoBody() const noexcept;
    [[nodiscard]] bool isWholeByItsHead() const noexcept;
    [[nodiscard]] std::optional<HttpError> errorOf(CURLcode code) const;

    CurlEasy handle_;
    ConnectionSockets& sockets_;
    EarlyAnswers& earlyAnswers_;
    const Time& now_;
    Exchange exchange_;
    OriginQueue* queue_ = nullptr;
    std::shared_ptr<Connection> connection_;
    HeaderList headers_;
    ResponseHeadParser headParser_;
    BodyFraming framing_;
    ContentDecoder decoder_;
    BodyBuffer body_;
    std::size_t headSize_ = 0;
    /// Bytes of the body as they came, before decoding.
    std::uint64_t received_ = 0;
    Refusal refusal_ = Refusal::none;
    /// Of a bad answer: why it is one.
    std::string_view fault_;
    bool mayHaveBeenSent_ = false;
    Time begunAt_;
    Time lastProgress_;
    std::optional<Time> suspectedAt_;
    curl_off_t bytesMoved_ = 0;
    /// How much of the request had gone out when the end of the answer was looked for last.
    std::optional<curl_off_t> uploadedAtLook_;
    std::array<char, CURL_ERROR_SIZE> message_{};
};

}  // namespace Tarnwick_API::Platform
