#include <Platform/Http/Transfers/OriginQueue.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <iterator>

namespace Tarnwick_API::Platform {

void OriginQueue::wait(Exchange exchange) {
    group_ = std::move(exchange.group);
    waiting_.push_back(
        {std::move(exchange.request), std::move(exchange.onAnswer), std::move(exchange.stop), std::move(exchange.hop)});
}

Exchange OriginQueue::takeWaiting() {
    auto first = exchangeOf(std::move(waiting_.front()));
    waiting_.pop_front();
    letGroupGo();
    return first;
}

void OriginQueue::takeStopped(std::vector<Exchange>& stopped) {
    const auto first = std::stable_partition(waiting_.begin(), waiting_.end(), [](const Waiting& waiting) {
        return !waiting.stop || !waiting.stop->token.isStopped();
    });
    std::transform(std::move_iterator{first}, std::move_iterator{waiting_.end()}, std::back_inserter(stopped),
                   [this](Waiting&& waiting) { return exchangeOf(std::move(waiting)); });
    waiting_.erase(first, waiting_.end());
    letGroupGo();
}

Exchange OriginQueue::exchangeOf(Waiting waiting) const {
    return {.group = group_,
            .request = std::move(waiting.request),
            .onAnswer = std::move(waiting.onAnswer),
            .stop = std::move(waiting.stop),
            .hop = std::move(waiting.hop)};
}

/// Who took the last ones has it as well.
void OriginQueue::letGroupGo() noexcept {
    if (waiting_.empty()) {
        group_ = nullptr;
    }
}

std::string originKey(const Url& url) {
    const auto scheme = url.scheme();
    const auto host = url.host();
    auto port = url.port();
    if (port.empty()) {
        port = equalsIgnoringAsciiCase(scheme, "http") ? "80" : "443";
    }
    std::string key;
    key.reserve(scheme.size() + host.size() + port.size() + 4);
    key.append(scheme).append("://").append(host).append(":").append(port);
    std::transform(key.begin(), key.end(), key.begin(), asciiLower);
    return key;
}

bool OriginQueue::isFull() const noexcept {
    if (running_ >= limit_) {
        return true;
    }
    // An idle connection may have been closed: then nothing is known.
    const auto proven = used_.empty() ? 0 : proven_;
    return running_ >= proven && tried_ + (running_ - settled_) >= connections_;
}

void OriginQueue::occupy(ConnectionId connection, bool isTried, bool isNew) {
    auto used = find(connection);
    if (used == used_.end()) {
        used = used_.insert(used, {connection, 0, isTried});
        tried_ += isTried ? 1 : 0;
    }
    ++used->exchanges;
    if (isNew) {
        // The others were full, or gone.
        proven_ = settled_;
    }
    if (used->isTried) {
        settle(1);
    }
}

void OriginQueue::release(ConnectionId connection) noexcept {
    const auto used = find(connection);
    if (used == used_.end()) {
        return;
    }
    settled_ -= used->isTried ? 1 : 0;
    if (--used->exchanges == 0) {
        tried_ -= used->isTried ? 1 : 0;
        *used = used_.back();
        used_.pop_back();
    }
}

void OriginQueue::answered(ConnectionId connection, bool isTried, bool isMultiplexed) noexcept {
    limit_ = isMultiplexed ? streams_ : connections_;
    if (const auto used = find(connection); isTried && used != used_.end() && !used->isTried) {
        used->isTried = true;
        ++tried_;
        settle(used->exchanges);
    }
}

std::vector<OriginQueue::Used>::iterator OriginQueue::find(ConnectionId connection) noexcept {
    return std::find_if(used_.begin(), used_.end(),
                        [connection](const Used& used) { return used.connection == connection; });
}

void OriginQueue::settle(std::size_t exchanges) noexcept {
    settled_ += exchanges;
    proven_ = used_.size() > connections_ ? 0 : std::max(proven_, settled_);
}

}  // namespace Tarnwick_API::Platform
