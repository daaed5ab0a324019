#include <Platform/Http/Transfers/Transfer.hpp>

#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Http/Transfers/OptionSetter.hpp>
#include <Platform/Http/Transfers/OriginQueue.hpp>
#include <Platform/Http/Transfers/PeerCertificate.hpp>
#include <Platform/Http/Transfers/TransferError.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>
#include <Platform/Http/Transfers/TransferOptions.hpp>

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

/// Ends of a transfer that say nothing of the answer, when that has come whole.
bool leavesAnswer(CURLcode code) noexcept {
    return code == CURLE_OK || code == CURLE_OPERATION_TIMEDOUT || code == CURLE_SEND_ERROR ||
           code == CURLE_HTTP2_STREAM;
}

}  // namespace

Transfer::Transfer(CurlEasy handle, Exchange exchange, OriginQueue& queue, ConnectionSockets& sockets,
                   EarlyAnswers& earlyAnswers, const Time& now)
    : handle_{std::move(handle)},
      exchange_{std::move(exchange)},
      queue_{queue},
      sockets_{sockets},
      earlyAnswers_{earlyAnswers},
      now_{now},
      receiver_{exchange_.group->configuration(), exchange_.method()} {
}

Transfer* Transfer::on(CURL* handle) noexcept {
    Transfer* transfer = nullptr;
    return curl_easy_getinfo(handle, CURLINFO_PRIVATE, &transfer) == CURLE_OK ? transfer : nullptr;
}

void Transfer::prepare(OptionSetter& set) {
    set(CURLOPT_PREREQFUNCTION, &Transfer::onReadyToSend);
    set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    set(CURLOPT_WRITEFUNCTION, &Transfer::onBody);
    set(CURLOPT_XFERINFOFUNCTION, &Transfer::onProgress);
    set(CURLOPT_NOPROGRESS, 0L);
    setCommonOptions(set);
}

std::optional<HttpError> Transfer::setUp() {
    OptionSetter set{handle_.get()};
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_XFERINFODATA, this);
    set(CURLOPT_ERRORBUFFER, message_.data());
    setTransferOptions(set, exchange_, headers_);
    return set.error();
}

Transfer::Time Transfer::deadline() const noexcept {
    const auto& configuration = exchange_.group->configuration();
    const auto idleEnd = lastProgress_ + configuration.idleTimeout;
    return suspectedAt_ ? std::min(idleEnd, *suspectedAt_ + configuration.graceAfterNetworkChange) : idleEnd;
}

void Transfer::suspect() noexcept {
    // Hosts tell of one change by several notices: the first counts.
    if (!suspectedAt_ || lastProgress_ > *suspectedAt_) {
        suspectedAt_ = now_;
    }
}

bool Transfer::isMultiplexed() const {
    long version = 0;
    return curl_easy_getinfo(handle_.get(), CURLINFO_HTTP_VERSION, &version) == CURLE_OK &&
           version >= CURL_HTTP_VERSION_2_0;
}

std::unique_ptr<Hop> Transfer::redirect() const {
    const auto& head = receiver_.head();
    const char* resolved = nullptr;
    if (!head.isComplete() || curl_easy_getinfo(handle_.get(), CURLINFO_REDIRECT_URL, &resolved) != CURLE_OK ||
        resolved == nullptr) {
        return nullptr;
    }
    const auto* const current = exchange_.hop.get();
    const auto location = withinDocument(exchange_.url(), head.value("location")).value_or(resolved);
    auto next = nextHop(*exchange_.request, current, head.status(), location);
    if (next) {
        next->spent = std::chrono::duration_cast<std::chrono::microseconds>(now_ - begunAt_);
        if (current != nullptr) {
            next->spent += current->spent;
        }
    }
    return next;
}

TransportResult Transfer::takeAnswer(CURLcode code) {
    return receiver_.take(errorOf(code));
}

Exchange Transfer::end() {
    earlyAnswers_.forget(handle_.get());
    releaseConnection();
    queue_.leave();
    return std::move(exchange_);
}

std::optional<HttpError> Transfer::errorOf(CURLcode code) const {
    switch (refusal_) {
        case Refusal::spoiltConnection:
        case Refusal::retiredConnection:
        case Refusal::secondSending:
            return HttpError{HttpError::Kind::connectionLost, "the server closed the connection before it answered"};
        case Refusal::otherName:
            return HttpError{HttpError::Kind::certificate, "the certificate does not name the host of \"Host\""};
        case Refusal::networkLeft:
            return HttpError{HttpError::Kind::connectionLost,
                             "the network changed, and no longer leads over this connection"};
        case Refusal::silentSinceChange:
            return HttpError{HttpError::Kind::connectionLost,
                             "the network changed, and nothing has come or gone since"};
        case Refusal::none:
            break;
    }
    if (auto refusal = receiver_.refusal()) {
        return refusal;
    }
    if (code != CURLE_OK && !(leavesAnswer(code) && receiver_.isWhole())) {
        return transferError(handle_.get(), code, message_.data());
    }
    return receiver_.faultAtEnd();
}

int Transfer::onReadyToSend(void* transfer, char* remoteAddress, char* localAddress, int remotePort,
                            int localPort) noexcept {
    auto& self = *static_cast<Transfer*>(transfer);
    try {
        self.refusal_ = self.judgeSending({localAddress, localPort, remoteAddress, remotePort});
    } catch (const std::exception&) {
        return CURL_PREREQFUNC_ABORT;
    }
    self.mayHaveBeenSent_ = true;
    return self.refusal_ == Refusal::none ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

/// libcurl by itself sends a request again when a kept connection ends without an answer to it. That the server has not
/// acted on the first one is known of a GET alone.
Transfer::Refusal Transfer::judgeSending(const ConnectionSockets::Ends& ends) {
    if (mayHaveBeenSent_ && exchange_.method() != HttpMethod::get && exchange_.method() != HttpMethod::head) {
        return Refusal::secondSending;
    }
    if (!isPeerTrusted()) {
        return Refusal::otherName;
    }
    long newConnections = 0;
    const bool isKept =
        curl_easy_getinfo(handle_.get(), CURLINFO_NUM_CONNECTS, &newConnections) == CURLE_OK && newConnections == 0;
    auto connection = sockets_.find(ends);
    if (!connection) {
        return Refusal::none;
    }
    if (connection->isRetired) {
        return Refusal::retiredConnection;
    }
    if (isKept && ConnectionSockets::isSpoilt(*connection)) {
        return Refusal::spoiltConnection;
    }
    takeConnection(std::move(connection), !isKept);
    return Refusal::none;
}

bool Transfer::isPeerTrusted() const {
    const auto host = exchange_.url().host();
    if (exchange_.group->hostValidation(host) != HostValidation::hostHeader) {
        return true;
    }
    const bool isSent = !exchange_.hop || exchange_.hop->keepsHost;
    const auto* const header = isSent ? findHeader(exchange_.request->headers(), "Host") : nullptr;
    const auto named = header == nullptr ? std::string{host} : header->substr(0, header->find(':'));
    return peerCertificateNames(handle_.get(), named);
}

void Transfer::takeConnection(std::shared_ptr<Connection> connection, bool isNew) {
    releaseConnection();
    queue_.occupy(connection.get(), connection->isTried(), isNew);
    connection_ = std::move(connection);
    ++connection_->transfers;
    if (connection_->origin.empty()) {
        connection_->origin = queue_.origin();
        connection_->heardAt = now_;
    }
}

void Transfer::releaseConnection() noexcept {
    if (const auto connection = std::exchange(connection_, nullptr)) {
        queue_.release(connection.get());
        ConnectionSockets::release(*connection);
    }
}

std::size_t Transfer::onHeader(const char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept {
    auto& self = *static_cast<Transfer*>(transfer);
    const std::string_view line{bytes, size * count};
    self.noteLine(line);
    try {
        return self.receiver_.takeLine(line) ? line.size() : 0;
    } catch (const std::exception&) {
        self.receiver_.refuseForWantOfMemory();
        return 0;
    }
}

void Transfer::noteLine(std::string_view line) noexcept {
    if (connection_ && line.starts_with("HTTP/1")) {
        connection_->isOneAtATime = true;
    }
    // Lines alone are no progress: a server could go on with them for ever.
    if (line == "\r\n" || line == "\n") {
        lastProgress_ = now_;
    }
}

std::size_t Transfer::onBody(const char* bytes, std::size_t size, std::size_t count, void* transfer) noexcept {
    auto& self = *static_cast<Transfer*>(transfer);
    try {
        return self.receiver_.takeBody({bytes, size * count}) ? size * count : 0;
    } catch (const std::exception&) {
        self.receiver_.refuseForWantOfMemory();
        return 0;
    }
}

int Transfer::onProgress(void* transfer, curl_off_t /*downloadTotal*/, curl_off_t downloaded,
                         curl_off_t /*uploadTotal*/, curl_off_t uploaded) noexcept {
    auto& self = *static_cast<Transfer*>(transfer);
    if (downloaded + uploaded != self.bytesMoved_) {
        self.bytesMoved_ = downloaded + uploaded;
        self.lastProgress_ = self.now_;
    }
    try {
        if (self.mayHaveEndedUnseen(uploaded)) {
            self.earlyAnswers_.watch(self.handle_.get());
        }
    } catch (const std::exception&) {
        self.receiver_.refuseForWantOfMemory();
        return 1;
    }
    self.earlyAnswers_.reported(self.handle_.get());
    return 0;
}

bool Transfer::mayHaveEndedUnseen(curl_off_t uploaded) {
    if (exchange_.body() == nullptr || !hasAnswer() || uploadedAtLook_ == uploaded || !isMultiplexed()) {
        return false;
    }
    uploadedAtLook_ = uploaded;
    return true;
}

}  // namespace Tarnwick_API::Platform
