#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>

#include "Scenario.hpp"
#include "Traffic.hpp"

#include <memory>
#include <optional>
#include <random>

namespace Benchmarks {

/// One user's application: asks for the status when its turn comes, when its tunnel goes down, and when the user, or it
/// itself, tries again after a failure. It has one question at a time.
class Application {
public:
    /// What all of a fleet share. It outlives them.
    struct Surroundings {
        const Scenario& scenario;
        Tarnwick_API::Platform::VirtualTimeMainQueue& queue;
        Traffic& traffic;
        std::mt19937_64& lot;
    };

    explicit Application(const Surroundings& surroundings);

    void begin();

    /// Whether it wants an answer and has had none for a while.
    [[nodiscard]] bool isWaiting() const;

private:
    void takeTurns();
    void ask();
    void endWith(bool isAnswered);
    void askAfter(Seconds time);

    Surroundings surroundings_;
    std::shared_ptr<Tarnwick_API::TarnwickApi> api_;
    bool isAsking_ = false;
    /// The first of its questions that have come to no answer; none when all have.
    std::optional<Seconds> askedAt_;
};

}  // namespace Benchmarks
