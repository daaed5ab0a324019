#include <Platform/Cache/UseLog.hpp>

#include <algorithm>
#include <utility>

namespace Tarnwick_API::Platform {

std::vector<std::string> UseLog::take() {
    std::unordered_map<std::string, std::uint64_t> uses;
    {
        const std::lock_guard lock{mutex_};
        uses.swap(uses_);
    }
    std::vector<std::pair<std::uint64_t, std::string>> ordered;
    ordered.reserve(uses.size());
    for (const auto& [key, time] : uses) {
        ordered.emplace_back(time, key);
    }
    std::sort(ordered.begin(), ordered.end());
    std::vector<std::string> keys;
    keys.reserve(ordered.size());
    for (auto& [time, key] : ordered) {
        keys.push_back(std::move(key));
    }
    return keys;
}

}  // namespace Tarnwick_API::Platform
