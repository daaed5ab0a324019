#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Benchmarks {

/// What this process holds at one moment.
struct ResourceUse {
    double descriptors = 0;
    double threads = 0;
    /// Bytes of memory that the system has given, and bytes that the program has allocated of it.
    double residentMemory = 0;
    double allocatedMemory = 0;

    [[nodiscard]] static ResourceUse now();
};

/// Samples of a whole run, judged by the line that fits them best: two points prove nothing, as memory is held and
/// given back all the time.
class ResourceTrend {
public:
    /// `progress`: how much of the load has been done by now.
    void sample(std::size_t progress);

    /// How one quantity has developed since the first quarter, in which buffers, caches and connections come to be.
    struct Line {
        std::string name;
        double mean = 0;
        double highest = 0;
        /// Growth along the line, from its first sample to its last.
        double growth = 0;
        /// What counts as flat.
        double tolerance = 0;

        [[nodiscard]] bool isFlat() const noexcept { return growth <= tolerance; }
    };
    [[nodiscard]] std::vector<Line> lines() const;

    [[nodiscard]] std::size_t count() const noexcept { return samples_.size(); }

private:
    struct Sample {
        double progress;
        ResourceUse use;
    };
    std::vector<Sample> samples_;
};

}  // namespace Benchmarks
