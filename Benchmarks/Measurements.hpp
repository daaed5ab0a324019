#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Benchmarks {

/// Processor time that this process has used, all threads.
[[nodiscard]] std::chrono::nanoseconds processCpuTime();

/// Resident memory now, in bytes.
[[nodiscard]] std::size_t residentMemory();

/// The growth of resident memory to its peak since construction, in bytes. Memory that the allocator kept from earlier
/// work is given back first, so that it does not hide what is needed now.
class PeakMemory {
public:
    PeakMemory();
    [[nodiscard]] std::size_t growth() const;

private:
    std::size_t before_;
};

[[nodiscard]] double median(std::vector<double> values);

/// Notes one repetition's value of `metric`, as measured for `candidate`.
void note(std::string_view metric, std::string_view candidate, double value);

/// A limit for the ratio of two candidates' medians, or for the median of one.
struct Goal {
    std::string_view metric;
    std::string_view candidate;
    /// Empty: the candidate's own value is compared.
    std::string_view peer;
    bool atLeast;
    double limit;
};

/// Prints every noted metric and how it stands to its goal.
void report(const std::vector<Goal>& goals);

/// Writes the same to a file for scripts/draw-benchmarks, with the machine and the day; whether it could be written.
[[nodiscard]] bool writeJson(const std::string& path, const std::vector<Goal>& goals);

}  // namespace Benchmarks
