#include "Measurements.hpp"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <map>
#include <string>
#include <utility>

#include <malloc.h>

namespace Benchmarks {

namespace {

using Key = std::pair<std::string, std::string>;

std::map<Key, std::vector<double>>& notes() {
    static std::map<Key, std::vector<double>> values;
    return values;
}

std::size_t statusField(std::string_view name) {
    std::ifstream file{"/proc/self/status"};
    std::string line;
    constexpr std::size_t kibibyte = 1024;
    while (std::getline(file, line)) {
        if (line.starts_with(name)) {
            return std::stoul(line.substr(name.size())) * kibibyte;
        }
    }
    return 0;
}

}  // namespace

std::chrono::nanoseconds processCpuTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

std::size_t residentMemory() {
    return statusField("VmRSS:");
}

PeakMemory::PeakMemory() {
    malloc_trim(0);
    // Makes the peak begin anew.
    std::ofstream{"/proc/self/clear_refs"} << "5";
    before_ = residentMemory();
}

std::size_t PeakMemory::growth() const {
    const auto peak = statusField("VmHWM:");
    return peak > before_ ? peak - before_ : 0;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void note(std::string_view metric, std::string_view candidate, double value) {
    notes()[{std::string{metric}, std::string{candidate}}].push_back(value);
}

void report(const std::vector<Goal>& goals) {
    std::puts("\nMedians of the repetitions");
    for (const auto& [key, values] : notes()) {
        std::printf("  %-38s %-28s %12.2f\n", key.first.c_str(), key.second.c_str(), median(values));
    }
    std::puts("\nGoals");
    for (const auto& goal : goals) {
        const auto own = notes().find({std::string{goal.metric}, std::string{goal.candidate}});
        const auto peer = notes().find({std::string{goal.metric}, std::string{goal.peer}});
        if (own == notes().end() || (!goal.peer.empty() && peer == notes().end())) {
            continue;
        }
        const double value = median(own->second) / (goal.peer.empty() ? 1 : median(peer->second));
        const bool met = goal.atLeast ? value >= goal.limit : value <= goal.limit;
        std::printf("  %-38s %s%s%s: %.2f, goal %s %.2f: %s\n", std::string{goal.metric}.c_str(),
                    std::string{goal.candidate}.c_str(), goal.peer.empty() ? "" : " / ", std::string{goal.peer}.c_str(),
                    value, goal.atLeast ? ">=" : "<=", goal.limit, met ? "met" : "MISSED");
    }
}

}  // namespace Benchmarks
