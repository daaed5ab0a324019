#include "Measurements.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <malloc.h>
#include <nlohmann/json.hpp>

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

namespace {

/// How it stands; none when one of its candidates was not measured.
std::optional<double> valueFor(const Goal& goal) {
    const auto own = notes().find({std::string{goal.metric}, std::string{goal.candidate}});
    const auto peer = notes().find({std::string{goal.metric}, std::string{goal.peer}});
    if (own == notes().end() || (!goal.peer.empty() && peer == notes().end())) {
        return std::nullopt;
    }
    return median(own->second) / (goal.peer.empty() ? 1 : median(peer->second));
}

bool isMet(const Goal& goal, double value) {
    return goal.atLeast ? value >= goal.limit : value <= goal.limit;
}

std::string processorName() {
    std::ifstream file{"/proc/cpuinfo"};
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("model name")) {
            return line.substr(std::min(line.find(':') + 2, line.size()));
        }
    }
    return "unknown processor";
}

}  // namespace

void report(const std::vector<Goal>& goals) {
    std::puts("\nMedians of the repetitions");
    for (const auto& [key, values] : notes()) {
        std::printf("  %-38s %-28s %12.2f\n", key.first.c_str(), key.second.c_str(), median(values));
    }
    std::puts("\nGoals");
    for (const auto& goal : goals) {
        const auto value = valueFor(goal);
        if (!value) {
            continue;
        }
        std::printf("  %-38s %s%s%s: %.2f, goal %s %.2f: %s\n", std::string{goal.metric}.c_str(),
                    std::string{goal.candidate}.c_str(), goal.peer.empty() ? "" : " / ", std::string{goal.peer}.c_str(),
                    *value, goal.atLeast ? ">=" : "<=", goal.limit, isMet(goal, *value) ? "met" : "MISSED");
    }
}

bool writeJson(const std::string& path, const std::vector<Goal>& goals) {
    using Json = nlohmann::ordered_json;
    std::array<char, sizeof "2026-01-31"> day{};
    const std::time_t now = std::time(nullptr);
    std::tm calendar{};
    std::strftime(day.data(), day.size(), "%F", gmtime_r(&now, &calendar));
    Json metrics = Json::object();
    for (const auto& [key, values] : notes()) {
        metrics[key.first][key.second] = median(values);
    }
    Json judged = Json::array();
    for (const auto& goal : goals) {
        if (const auto value = valueFor(goal)) {
            judged.push_back({{"metric", goal.metric},
                              {"candidate", goal.candidate},
                              {"peer", goal.peer},
                              {"goal", (goal.atLeast ? ">= " : "<= ") + Json(goal.limit).dump()},
                              {"value", *value},
                              {"met", isMet(goal, *value)}});
        }
    }
    const Json document = {{"day", day.data()},
                           {"machine", std::to_string(std::thread::hardware_concurrency()) + " x " + processorName()},
                           {"metrics", metrics},
                           {"goals", judged}};
    std::ofstream file{path};
    constexpr int indentation = 2;
    file << document.dump(indentation) << '\n';
    return file.flush().good();
}

}  // namespace Benchmarks
