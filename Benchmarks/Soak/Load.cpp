#include "Load.hpp"

#include <algorithm>
#include <optional>
#include <utility>

namespace Benchmarks {

using namespace Tarnwick_API;

namespace {

constexpr std::chrono::milliseconds betweenSamples{100};
/// Six attempts of which each waits for its time-out would take longer, but no fault lets one wait.
constexpr std::chrono::minutes longestSilence{1};

/// For a completion that is called once more when all have been.
constexpr std::chrono::milliseconds timeForRepetitions{200};

constexpr std::uint8_t mostEnds = 255;

}  // namespace

Load::Load(const ServiceAccess& service, const SoakOptions& options)
    : options_{options}, ends_(options.requests), kindOf_(options.requests), mix_{service, queue_, options.seed} {
    service.install();
    Platform::MainQueue::setMain(queue_);
    count_.byKind.resize(mix_.kinds().size());
}

bool Load::run() {
    std::optional<Ending> signIn;
    mix_.signIn([&signIn](Ending ending) { signIn = ending; });
    queue_->runUntil([&signIn] { return signIn.has_value(); });
    if (signIn != Ending::value) {
        return false;
    }
    const auto observation = mix_.reader().observeAttempts(
        [this](const RequestAttempt& attempt) { count_.failedAttempts += attempt.failure ? 1U : 0U; });
    began_ = Clock::now();
    lastEnd_ = began_;
    fill();
    sampleEvery(betweenSamples);
    queue_->runUntil([this] { return isDone() || Clock::now() > lastEnd_ + longestSilence; });
    count_.time = lastEnd_ - began_;
    run(timeForRepetitions);
    return true;
}

void Load::runFor(std::chrono::microseconds time) {
    mix_.signIn([this](Ending ending) {
        if (ending == Ending::value) {
            fill();
        }
    });
    run(time);
}

void Load::run(std::chrono::microseconds time) {
    const auto isOver = std::make_shared<bool>(false);
    queue_->after(time, [isOver] { *isOver = true; });
    queue_->runUntil([&isOver] { return *isOver; });
}

Load::Count Load::count() const {
    auto count = count_;
    const auto end = ends_.begin() + static_cast<std::ptrdiff_t>(count.begun);
    count.missing = static_cast<std::size_t>(std::count(ends_.begin(), end, 0));
    count.repeated =
        static_cast<std::size_t>(std::count_if(ends_.begin(), end, [](std::uint8_t ends) { return ends > 1; }));
    return count;
}

bool Load::isEnough() const {
    return count_.begun == options_.requests ||
           (options_.duration.count() > 0 && Clock::now() - began_ >= options_.duration);
}

bool Load::isDone() const {
    return ended_ == count_.begun && isEnough();
}

void Load::fill() {
    while (count_.begun - ended_ < options_.inFlight && !isEnough()) {
        begin();
    }
}

void Load::begin() {
    const auto number = count_.begun++;
    if (faults_ != nullptr) {
        faults_->keepUpWith(count_.begun);
    }
    const auto kind = mix_.begin([this, number](Ending ending) { end(number, ending); });
    kindOf_[number] = static_cast<std::uint8_t>(kind);
}

void Load::end(std::size_t number, Ending ending) {
    auto& ends = ends_[number];
    if (ends > 0) {
        ends = ends < mostEnds ? ends + 1 : ends;
        return;
    }
    ends = 1;
    ++ended_;
    lastEnd_ = Clock::now();
    const auto column = static_cast<std::size_t>(ending);
    ++count_.endings[column];
    ++count_.byKind[kindOf_[number]][column];
    if (onEnd_) {
        onEnd_();
    }
    if (!isEnough()) {
        begin();
    }
}

void Load::sampleEvery(std::chrono::milliseconds pause) {
    if (!isEnough()) {
        resources_.sample(ended_);
    }
    queue_->after(pause, [this, pause] { sampleEvery(pause); });
}

}  // namespace Benchmarks
