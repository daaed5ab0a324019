#include <Platform/Http/Transfers/TransferEngine.hpp>

#include <Platform/Http/Transfers/ConnectionRoute.hpp>
#include <Platform/Http/Transfers/OptionSetter.hpp>
#include <Platform/Http/Transfers/OriginQueue.hpp>
#include <Platform/Http/Transfers/Transfer.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>
#include <Platform/Http/Transfers/WakeUpPair.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

/// Connections kept open for later, of all sessions together. libcurl's own rule counts the transfers in progress,
/// and so would close most of them whenever a burst of requests ends.
constexpr long idleConnections = 64;

/// A change of the network comes as a burst of notices; in the middle of it an address may be gone for a moment.
constexpr std::chrono::milliseconds settlingTime{100};

constexpr std::chrono::milliseconds betweenLooksAtConnecting{50};

std::optional<HttpError> multiError(CURLMcode code) {
    if (code == CURLM_OK) {
        return std::nullopt;
    }
    return HttpError{HttpError::Kind::other, std::string{"libcurl takes no transfer: "} + curl_multi_strerror(code)};
}

}  // namespace

TransferEngine::TransferEngine(Clock clock) : clock_{std::move(clock)}, now_{clock_()} {
    if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        throw std::runtime_error{"libcurl can't be initialised"};
    }
    share_.reset(curl_share_init());
    multi_.reset(curl_multi_init());
    // One thread uses the share, so it needs no locks.
    if (!share_ || !multi_ ||
        curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION) != CURLSHE_OK ||
        curl_multi_setopt(multi_.get(), CURLMOPT_MAXCONNECTS, idleConnections) != CURLM_OK) {
        throw std::runtime_error{"libcurl can't be set up"};
    }
    keepFromExecutedPrograms(multi_.get());
}

TransferEngine::~TransferEngine() = default;

void TransferEngine::start(Exchange exchange) {
    auto& group = *exchange.group;
    if (group.isDropped() || exchange.isStopped()) {
        complete(std::move(exchange), cancelledAnswer());
        return;
    }
    if (!group.allowsScheme(exchange.url().scheme())) {
        complete(std::move(exchange), failedAnswer({HttpError::Kind::other, "the URL's scheme is not allowed"}));
        return;
    }
    auto& queue = group.originQueue(exchange.url());
    // Those that wait come first, also in the moment when one has just left.
    if (queue.isFull() || queue.hasWaiting()) {
        queue.wait(std::move(exchange));
    } else {
        launch(std::move(exchange), queue);
    }
}

void TransferEngine::launch(Exchange exchange, OriginQueue& queue) {
    auto transfer = std::make_unique<Transfer>(takeHandle(), std::move(exchange), queue, sockets_, earlyAnswers_, now_);
    queue.enter();
    auto error = transfer->setUp();
    if (!error) {
        error = multiError(curl_multi_add_handle(multi_.get(), transfer->handle()));
    }
    if (error) {
        complete(transfer->end(), failedAnswer(std::move(*error)));
        return;
    }
    nextCheck_ = std::min(nextCheck_, transfer->deadline());
    transfer->position = running_.size();
    running_.push_back(std::move(transfer));
    hasNew_ = true;
}

void TransferEngine::prepareHandle() {
    if (nextHandle_) {
        return;
    }
    CurlEasy handle{curl_easy_init()};
    OptionSetter set{handle.get()};
    set(CURLOPT_SHARE, share_.get());
    sockets_.serve(set);
    Transfer::prepare(set);
    if (!set.error()) {
        nextHandle_ = std::move(handle);
    }
}

CurlEasy TransferEngine::takeHandle() {
    prepareHandle();
    if (!nextHandle_) {
        throw std::bad_alloc{};
    }
    return std::exchange(nextHandle_, nullptr);
}

void TransferEngine::admitWaiting(OriginQueue& queue) {
    while (!queue.isFull() && queue.hasWaiting()) {
        launch(queue.takeWaiting(), queue);
    }
}

/// Some may have found room, on connections that now prove to take more.
void TransferEngine::admitAllWaiting() {
    // What is launched here waits for nothing but the next round.
    const auto count = running_.size();
    for (std::size_t index = 0; index < count && index < running_.size(); ++index) {
        auto& queue = running_[index]->queue();
        if (queue.hasWaiting() && !queue.isFull()) {
            const auto group = running_[index]->exchange().group;
            admitWaiting(queue);
        }
    }
}

bool TransferEngine::isConnecting() const noexcept {
    return std::any_of(running_.begin(), running_.end(),
                       [](const auto& transfer) { return transfer->connection() == nullptr; });
}

bool TransferEngine::perform() {
    hasNew_ = false;
    now_ = clock_();
    int stillRunning = 0;
    curl_multi_perform(multi_.get(), &stillRunning);
    int messagesLeft = 0;
    while (const auto* const message = curl_multi_info_read(multi_.get(), &messagesLeft)) {
        auto* const transfer = Transfer::on(message->easy_handle);
        if (message->msg == CURLMSG_DONE && transfer != nullptr) {
            finish(*transfer, message->data.result);
        }
    }
    if (now_ >= changeSettles_) {
        changeSettles_ = Time::max();
        noticeChange();
    }
    if (now_ >= nextCheck_) {
        finishOverdue();
    }
    admitAllWaiting();
    if (hasNew_ || earlyAnswers_.areWatched()) {
        return true;
    }
    // Now it is the servers' turn: what the next request would wait for gets done meanwhile.
    prepareHandle();
    if (std::exchange(isCalled_, false)) {
        wakeUp_.clear();
    }
    return false;
}

void TransferEngine::finish(Transfer& transfer, CURLcode code) {
    auto& queue = transfer.queue();
    const bool hasMetRetired = transfer.hasMetRetiredConnection();
    if (hasMetRetired || transfer.hasMetSpoiltConnection()) {
        auto exchange = detach(transfer)->end();
        const auto group = exchange.group;
        exchange.needsOwnConnection = hasMetRetired;
        launch(std::move(exchange), queue);
        // It may have ended at once.
        admitWaiting(queue);
        return;
    }
    if (transfer.hasAnswer()) {
        auto* const connection = transfer.connection();
        if (connection != nullptr) {
            ++connection->answers;
            connection->heardAt = transfer.lastProgress();
        }
        queue.answered(connection, connection != nullptr && connection->isTried(), transfer.isMultiplexed());
    }
    if (code == CURLE_OPERATION_TIMEDOUT) {
        // What it went out on may be dead without a word, and so may the others.
        sockets_.retire(queue.origin());
        queue.forgetRoom();
    }
    auto hop = code == CURLE_OK ? transfer.redirect() : nullptr;
    const bool isLoop = hop && hop->number > maximumRedirects;
    auto answer = transfer.takeAnswer(isLoop ? CURLE_TOO_MANY_REDIRECTS : code);
    // Where libcurl has ended it well, the answer need not wait until the handle is given back.
    auto ended = code == CURLE_OK ? nullptr : detach(transfer);
    auto exchange = transfer.end();
    // The group may end with the exchange, and the queue with it.
    const auto group = exchange.group;
    if (hop && !isLoop) {
        exchange.hop = std::move(hop);
        exchange.needsOwnConnection = false;
        start(std::move(exchange));
    } else {
        complete(std::move(exchange), std::move(answer));
    }
    if (!ended) {
        ended = detach(transfer);
    }
    admitWaiting(queue);
}

void TransferEngine::finishOverdue() {
    for (const auto& transfer : running_) {
        if (auto* const connection = transfer->connection()) {
            connection->heardAt = std::max(connection->heardAt, transfer->lastProgress());
        }
    }
    std::vector<Transfer*> overdue;
    nextCheck_ = Time::max();
    for (const auto& transfer : running_) {
        const auto& suspectedAt = transfer->suspectedAt();
        const auto* const connection = transfer->connection();
        if (suspectedAt && connection != nullptr && connection->heardAt > *suspectedAt) {
            transfer->trust();
        }
        if (transfer->deadline() <= now_) {
            overdue.push_back(transfer.get());
        } else {
            nextCheck_ = std::min(nextCheck_, transfer->deadline());
        }
    }
    for (auto* const transfer : overdue) {
        if (transfer->suspectedAt()) {
            transfer->giveUpAfterChange(false);
            finish(*transfer, CURLE_ABORTED_BY_CALLBACK);
        } else {
            finish(*transfer, CURLE_OPERATION_TIMEDOUT);
        }
    }
}

void TransferEngine::finishLeftBehind() {
    std::vector<Transfer*> leftBehind;
    for (const auto& transfer : running_) {
        auto* const connection = transfer->connection();
        if (connection != nullptr && leadsElsewhere(connection->socket, connection->peer)) {
            connection->isRetired = true;
            leftBehind.push_back(transfer.get());
        }
    }
    for (auto* const transfer : leftBehind) {
        transfer->giveUpAfterChange(true);
        finish(*transfer, CURLE_ABORTED_BY_CALLBACK);
    }
}

void TransferEngine::networkChanged() {
    now_ = clock_();
    sockets_.retireAll();
    sockets_.endStrayAttempts();
    finishLeftBehind();
    for (const auto& transfer : running_) {
        transfer->suspect();
        transfer->queue().forgetRoom();
        nextCheck_ = std::min(nextCheck_, transfer->deadline());
    }
}

/// A transfer that only waits, while a lease of the old address is renewed, is left alone.
void TransferEngine::noticeChange() {
    sockets_.endIdle();
    sockets_.endStrayAttempts();
    finishLeftBehind();
}

void TransferEngine::cancelAll(TransferGroup& group) {
    std::vector<Transfer*> transfers;
    for (const auto& transfer : running_) {
        if (transfer->exchange().group.get() == &group) {
            transfers.push_back(transfer.get());
        }
    }
    for (auto* const transfer : transfers) {
        complete(detach(*transfer)->end(), cancelledAnswer());
    }
    for (auto& exchange : group.takeWaiting()) {
        complete(std::move(exchange), cancelledAnswer());
    }
}

void TransferEngine::cancelStopped() {
    std::vector<Transfer*> transfers;
    // Who waits, waits for some that run.
    std::set<OriginQueue*> queues;
    for (const auto& transfer : running_) {
        if (transfer->exchange().isStopped()) {
            transfers.push_back(transfer.get());
        }
        queues.insert(&transfer->queue());
    }
    std::vector<Exchange> waiting;
    for (auto* const queue : queues) {
        queue->takeStopped(waiting);
    }
    for (auto* const transfer : transfers) {
        auto& queue = transfer->queue();
        auto exchange = detach(*transfer)->end();
        const auto group = exchange.group;
        complete(std::move(exchange), cancelledAnswer());
        admitWaiting(queue);
    }
    for (auto& exchange : waiting) {
        complete(std::move(exchange), cancelledAnswer());
    }
}

std::unique_ptr<Transfer> TransferEngine::detach(Transfer& transfer) {
    curl_multi_remove_handle(multi_.get(), transfer.handle());
    auto& place = running_[transfer.position];
    auto owner = std::exchange(place, nullptr);
    if (&place != &running_.back()) {
        place = std::move(running_.back());
        place->position = owner->position;
    }
    running_.pop_back();
    return owner;
}

std::chrono::milliseconds TransferEngine::timeToWait(std::chrono::milliseconds longest) const {
    using Milliseconds = std::chrono::milliseconds;
    auto time = longest;
    if (const auto next = nextDeadline(); next != Time::max()) {
        time = std::clamp(std::chrono::ceil<Milliseconds>(next - clock_()), Milliseconds{0}, longest);
    }
    if (isConnecting()) {
        // libcurl gives an address up in one round and tries the next one in another, for which it sets no timer.
        time = std::min(time, betweenLooksAtConnecting);
    }
    return time;
}

void TransferEngine::wait(std::chrono::milliseconds longest) {
    const auto time = timeToWait(longest);
    std::array<curl_waitfd, 2> others{{{.fd = wakeUp_.descriptor(), .events = CURL_WAIT_POLLIN, .revents = 0},
                                       {.fd = monitor_.descriptor(), .events = CURL_WAIT_POLLIN, .revents = 0}}};
    const unsigned count = monitor_.descriptor() >= 0 ? 2 : 1;
    // Unlike curl_multi_poll it leaves libcurl's own wake-up out, which nobody uses.
    curl_multi_wait(multi_.get(), others.data(), count, static_cast<int>(time.count()), nullptr);
    now_ = clock_();
    const auto& [calls, notices] = others;
    isCalled_ = calls.revents != 0;
    if (notices.revents != 0 && monitor_.takeChanges()) {
        // At once for what is made now, and again when all has come.
        sockets_.endIdle();
        changeSettles_ = std::min(changeSettles_, now_ + settlingTime);
    }
}

TransferEngine::Time TransferEngine::nextDeadline() const noexcept {
    return running_.empty() ? changeSettles_ : std::min(nextCheck_, changeSettles_);
}

void TransferEngine::wake() {
    wakeUp_.call();
}

}  // namespace Tarnwick_API::Platform
