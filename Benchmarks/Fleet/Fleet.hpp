#pragma once

#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>

#include "Scenario.hpp"
#include "Traffic.hpp"

#include <cstddef>
#include <memory>
#include <random>
#include <vector>

namespace Benchmarks {

class Application;

/// Applications with a facade each, of the library as it is shipped, on one virtual clock.
class Fleet {
public:
    Fleet(const Scenario& scenario, std::shared_ptr<Tarnwick_API::Platform::VirtualTimeMainQueue> queue,
          std::shared_ptr<Traffic> traffic);
    ~Fleet();
    Fleet(const Fleet&) = delete;
    Fleet& operator=(const Fleet&) = delete;

    /// Lets virtual time pass, from the beginning of the scenario to its end.
    void run();

    /// How many applications want an answer and have got none.
    [[nodiscard]] std::size_t waiting() const;

private:
    Scenario scenario_;
    std::shared_ptr<Tarnwick_API::Platform::VirtualTimeMainQueue> queue_;
    std::mt19937_64 lot_;
    std::vector<std::unique_ptr<Application>> applications_;
};

}  // namespace Benchmarks
