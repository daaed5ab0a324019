#pragma once

#include <Platform/Http/Transfers/AnswerReceiver.hpp>
#include <Platform/Http/Transfers/ConnectionSockets.hpp>
#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/EarlyAnswers.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>
#include <Platform/Http/Transfers/HeaderList.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

class OptionSetter;
class OriginQueue;

/// One hop of an exchange, on an easy handle of its own. Thread: the I/O thread.
class Transfer {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// `handle` is a fresh one, prepared, and serves this alone: libcurl before 8.1.0 keeps a pointer into an answer's
    /// head beyond the reset of a handle, and uses it for the next answer whose first line is a continuation. `queue`
    /// admits `exchange`; `now` is the I/O thread's clock, read where bytes arrive. All must outlive this.
    Transfer(CurlEasy handle, Exchange exchange, OriginQueue& queue, ConnectionSockets& sockets,
             EarlyAnswers& earlyAnswers, const Time& now);

    /// The transfer that runs on `handle`; null when none does.
    [[nodiscard]] static Transfer* on(CURL* handle) noexcept;

    /// Sets on a handle what all transfers have, which fails for want of memory alone. It is done before there is an
    /// exchange, which then waits for less.
    static void prepare(OptionSetter& set);

    /// Sets up the handle, which is prepared. Returns why that can't be.
    [[nodiscard]] std::optional<HttpError> setUp();

    [[nodiscard]] CURL* handle() const noexcept { return handle_.get(); }
    [[nodiscard]] const Exchange& exchange() const noexcept { return exchange_; }
    [[nodiscard]] OriginQueue& queue() const noexcept { return queue_; }

    /// When the exchange ends for want of progress, or its grace does, unless bytes come or go before.
    [[nodiscard]] Time deadline() const noexcept;

    /// Whether an answer came, and over a connection for many requests at once.
    [[nodiscard]] bool hasAnswer() const noexcept { return receiver_.head().isComplete(); }
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

    /// What became of the transfer, which libcurl ended with `code`. Once, and before `end`.
    [[nodiscard]] TransportResult takeAnswer(CURLcode code);

    /// Lets go of queue and connection, and gives the exchange back. Once, and last.
    [[nodiscard]] Exchange end();

    /// Where the I/O thread keeps this among its running transfers.
    std::size_t position = 0;

private:
    /// Why the request is not to go out, or on.
    enum class Refusal {
        none,
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
    void noteLine(std::string_view line) noexcept;
    [[nodiscard]] bool mayHaveEndedUnseen(curl_off_t uploaded);
    [[nodiscard]] std::optional<HttpError> errorOf(CURLcode code) const;

    CurlEasy handle_;
    Exchange exchange_;
    OriginQueue& queue_;
    ConnectionSockets& sockets_;
    EarlyAnswers& earlyAnswers_;
    const Time& now_;
    std::shared_ptr<Connection> connection_;
    HeaderList headers_;
    AnswerReceiver receiver_;
    Refusal refusal_ = Refusal::none;
    bool mayHaveBeenSent_ = false;
    Time begunAt_ = now_;
    Time lastProgress_ = now_;
    std::optional<Time> suspectedAt_;
    curl_off_t bytesMoved_ = 0;
    /// How much of the request had gone out when the end of the answer was looked for last.
    std::optional<curl_off_t> uploadedAtLook_;
    std::array<char, CURL_ERROR_SIZE> message_{};
};

}  // namespace Tarnwick_API::Platform
