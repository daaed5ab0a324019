#include "Traffic.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace Benchmarks {

namespace {

constexpr std::size_t slotsPerSecond = 10;

constexpr auto attemptsOf = [](std::size_t sum, const auto& slot) { return sum + slot.attempts; };
constexpr auto recoveredOf = [](std::size_t sum, const auto& slot) { return sum + slot.recovered; };

}  // namespace

Traffic::Traffic(const Scenario& scenario) : scenario_{scenario}, slots_(slotAt(scenario.end()) + 1) {
}

std::size_t Traffic::slotAt(Seconds time) const {
    return static_cast<std::size_t>(std::lround(std::floor(time.count() * slotsPerSecond)));
}

Traffic::Slot& Traffic::at(Seconds now) {
    return slots_[std::min(slotAt(now), slots_.size() - 1)];
}

std::size_t Traffic::peak(Seconds first, Seconds last, std::size_t slots) const {
    std::size_t most = 0;
    const auto length = static_cast<std::ptrdiff_t>(slots);
    const auto end = slots_.begin() + static_cast<std::ptrdiff_t>(slotAt(last));
    for (auto slot = slots_.begin() + static_cast<std::ptrdiff_t>(slotAt(first)); end - slot >= length; ++slot) {
        most = std::max(most, std::accumulate(slot, slot + length, std::size_t{0}, attemptsOf));
    }
    return most;
}

Seconds Traffic::settled() const {
    constexpr std::size_t window = 5 * slotsPerSecond;
    const auto limit = 2 * scenario_.normalLoad() * 5;
    const auto back = slots_.begin() + static_cast<std::ptrdiff_t>(slotAt(scenario_.backAt()));
    Seconds last{0};
    for (auto slot = back; slot + window <= slots_.end(); ++slot) {
        if (static_cast<double>(std::accumulate(slot, slot + window, std::size_t{0}, attemptsOf)) > limit) {
            last = Seconds{static_cast<double>(slot - back + window) / slotsPerSecond};
        }
    }
    return last;
}

std::optional<Seconds> Traffic::recovered(double share, std::size_t waiting) const {
    const auto all = std::accumulate(slots_.begin(), slots_.end(), waiting, recoveredOf);
    const auto wanted = share * static_cast<double>(all);
    std::size_t sum = 0;
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
        sum += slots_[slot].recovered;
        if (static_cast<double>(sum) >= wanted) {
            return std::max(Seconds{static_cast<double>(slot + 1) / slotsPerSecond} - scenario_.backAt(), Seconds{0});
        }
    }
    return std::nullopt;
}

void Traffic::writeCsv(std::ostream& stream) const {
    // Seconds since the outage began.
    stream << "seconds,requests,answers\n";
    for (std::size_t slot = 0; slot + 1 < slots_.size(); ++slot) {
        stream << static_cast<double>(slot) / slotsPerSecond - scenario_.before.count() << ','
               << slots_[slot].attempts * slotsPerSecond << ',' << slots_[slot].answers * slotsPerSecond << '\n';
    }
}

void Traffic::writeSummary(std::ostream& stream, std::size_t waiting) const {
    const auto back = scenario_.backAt();
    const auto times = [this](Seconds first, Seconds last, std::size_t slots) {
        const auto perSecond = static_cast<double>(peak(first, last, slots) * slotsPerSecond / slots);
        return perSecond / scenario_.normalLoad();
    };
    const auto recoveredAfter = [&](double share) -> std::optional<double> {
        const auto time = recovered(share, waiting);
        return time ? std::optional{time->count()} : std::nullopt;
    };
    const std::pair<const char*, std::optional<double>> members[] = {
        {"clients", static_cast<double>(scenario_.clients)},
        {"outage_s", scenario_.outage.count()},
        {"spread", scenario_.spread},
        {"normal_per_s", scenario_.normalLoad()},
        // Multiples of the normal load, within a second and within a tenth of one.
        {"peak_in_outage", times(scenario_.before, back, slotsPerSecond)},
        {"peak_after", times(back, scenario_.end(), slotsPerSecond)},
        {"sharp_peak_after", times(back, scenario_.end(), 1)},
        // Seconds since the service's return; none when that has not been by the end.
        {"half_recovered_s", recoveredAfter(0.5)},
        {"99_percent_recovered_s", recoveredAfter(0.99)},
        {"settled_s", settled().count()},
        {"still_waiting", static_cast<double>(waiting)},
    };
    const char* before = "{";
    for (const auto& [name, value] : members) {
        stream << std::exchange(before, ", ") << '"' << name << "\": ";
        value ? stream << *value : stream << "null";
    }
    stream << "}\n";
}

}  // namespace Benchmarks
