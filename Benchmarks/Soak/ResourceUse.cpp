#include "ResourceUse.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TARNWICK_SANITIZED_ALLOCATOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TARNWICK_SANITIZED_ALLOCATOR
#endif
#endif
#ifdef TARNWICK_SANITIZED_ALLOCATOR
// Declared by a header that g++ comes without.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // NOLINT(bugprone-reserved-identifier)
#else
#include <malloc.h>
#endif

namespace Benchmarks {

namespace {

/// A sanitizer brings an allocator of its own, which the C library knows nothing of.
double allocatedMemory() {
#ifdef TARNWICK_SANITIZED_ALLOCATOR
    return static_cast<double>(__sanitizer_get_current_allocated_bytes());
#else
    const auto use = mallinfo2();
    return static_cast<double>(use.uordblks + use.hblkhd);
#endif
}

struct Quantity {
    const char* name;
    double ResourceUse::*member;
    /// Growth that counts as flat: so much, and this share of the mean.
    double allowance;
    double share;
};

constexpr double mebibyte = 1024 * 1024;
/// A session has one to six connections to a host, as faults close them, and an allocator keeps pages in steps.
constexpr Quantity quantities[] = {
    {"descriptors", &ResourceUse::descriptors, 6, 0},
    {"threads", &ResourceUse::threads, 0.5, 0},
    {"resident memory", &ResourceUse::residentMemory, 4 * mebibyte, 0.05},
    {"allocated memory", &ResourceUse::allocatedMemory, mebibyte / 2, 0.05},
};

}  // namespace

ResourceUse ResourceUse::now() {
    ResourceUse use;
    use.allocatedMemory = Benchmarks::allocatedMemory();
    std::ifstream file{"/proc/self/status"};
    constexpr double kibibyte = 1024;
    for (std::string line; std::getline(file, line);) {
        const auto value = [&line](std::string_view name) { return std::stod(line.substr(name.size())); };
        if (line.starts_with("VmRSS:")) {
            use.residentMemory = value("VmRSS:") * kibibyte;
        } else if (line.starts_with("Threads:")) {
            use.threads = value("Threads:");
        }
    }
    file.close();
    // One of them is the folder itself.
    const std::filesystem::directory_iterator descriptors{"/proc/self/fd"};
    use.descriptors = static_cast<double>(std::distance(begin(descriptors), end(descriptors))) - 1;
    return use;
}

void ResourceTrend::sample(std::size_t progress) {
    samples_.push_back({static_cast<double>(progress), ResourceUse::now()});
}

std::vector<ResourceTrend::Line> ResourceTrend::lines() const {
    const double warm = samples_.empty() ? 0 : samples_.back().progress / 4;
    const auto first = std::find_if(samples_.begin(), samples_.end(),
                                    [warm](const Sample& sample) { return sample.progress >= warm; });
    const auto count = static_cast<double>(samples_.end() - first);
    std::vector<Line> lines;
    for (const auto& quantity : quantities) {
        double progress = 0;
        double mean = 0;
        double highest = 0;
        for (auto sample = first; sample != samples_.end(); ++sample) {
            progress += sample->progress / count;
            mean += sample->use.*quantity.member / count;
            highest = std::max(highest, sample->use.*quantity.member);
        }
        double together = 0;
        double spread = 0;
        for (auto sample = first; sample != samples_.end(); ++sample) {
            const double distance = sample->progress - progress;
            together += distance * (sample->use.*quantity.member - mean);
            spread += distance * distance;
        }
        const double length = count > 0 ? samples_.back().progress - first->progress : 0;
        lines.push_back({quantity.name, mean, highest, spread > 0 ? together / spread * length : 0,
                         quantity.allowance + quantity.share * mean});
    }
    return lines;
}

}  // namespace Benchmarks
