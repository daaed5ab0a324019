#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tarnwick_API::Platform {

/// The keys that were looked up since the last write of their use. Look-ups then write nothing; the next change of the
/// database, before anything is evicted, writes what they would have. Thread: any.
class UseLog {
public:
    /// Whether so many keys have come together that they should be written.
    [[nodiscard]] bool note(const std::string& key) {
        const std::lock_guard lock{mutex_};
        uses_.insert_or_assign(key, ++clock_);
        return uses_.size() >= limit;
    }

    /// Takes the keys out, least recently used first.
    [[nodiscard]] std::vector<std::string> take();

private:
    static constexpr std::size_t limit = 1000;

    std::mutex mutex_;
    std::uint64_t clock_ = 0;
    std::unordered_map<std::string, std::uint64_t> uses_;
};

}  // namespace Tarnwick_API::Platform
