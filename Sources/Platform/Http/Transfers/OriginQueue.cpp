#include <Platform/Http/Transfers/OriginQueue.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <iterator>

namespace Tarnwick_API::Platform {

void OriginQueue::takeStopped(std::vector<Exchange>& stopped) {
    const auto first = std::stable_partition(waiting_.begin(), waiting_.end(),
                                             [](const Exchange& exchange) { return !exchange.isStopped(); });
    stopped.insert(stopped.end(), std::move_iterator{first}, std::move_iterator{waiting_.end()});
    waiting_.erase(first, waiting_.end());
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
