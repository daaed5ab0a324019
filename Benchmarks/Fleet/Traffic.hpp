#pragma once

#include "Scenario.hpp"

#include <cstddef>
#include <optional>
#include <ostream>
#include <vector>

namespace Benchmarks {

/// What came to the service, over virtual time.
class Traffic {
public:
    explicit Traffic(const Scenario& scenario);

    void attempt(Seconds now) { ++at(now).attempts; }
    void answer(Seconds now) { ++at(now).answers; }
    /// An application has got its answer that had asked for one in vain.
    void recover(Seconds now) { ++at(now).recovered; }

    /// One line for each tenth of a second: requests and answers, in requests a second.
    void writeCsv(std::ostream& stream) const;
    /// One JSON object; `waiting` applications still have no answer.
    void writeSummary(std::ostream& stream, std::size_t waiting) const;

private:
    struct Slot {
        std::size_t attempts = 0;
        std::size_t answers = 0;
        std::size_t recovered = 0;
    };

    [[nodiscard]] Slot& at(Seconds now);
    [[nodiscard]] std::size_t slotAt(Seconds time) const;
    /// The most requests within `slots` slots, from `first` on and before `last`.
    [[nodiscard]] std::size_t peak(Seconds first, Seconds last, std::size_t slots) const;
    /// How long after the service's return requests stay above twice the normal load, averaged over five seconds.
    [[nodiscard]] Seconds settled() const;
    /// How long after the service's return this share of those without an answer has got one; none when it has not.
    [[nodiscard]] std::optional<Seconds> recovered(double share, std::size_t waiting) const;

    Scenario scenario_;
    std::vector<Slot> slots_;
};

}  // namespace Benchmarks
