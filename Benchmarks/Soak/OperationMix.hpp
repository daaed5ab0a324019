#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include "Ending.hpp"
#include "ServiceAccess.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace Benchmarks {

class Visitor;

/// All operations of the facade, drawn by lot: most of them of a reader who stays signed in, the others of visitors who
/// sign in and out. Each end is held against what the service is known to have.
class OperationMix {
public:
    /// Called once, on the main queue.
    using Ended = std::function<void(Ending)>;

    OperationMix(const ServiceAccess& service, std::shared_ptr<Tarnwick_API::Platform::MainQueue> queue,
                 std::uint64_t seed);
    ~OperationMix();
    OperationMix(const OperationMix&) = delete;
    OperationMix& operator=(const OperationMix&) = delete;

    /// Signs the reader in. Nothing else may begin before that has ended.
    void signIn(Ended onEnd);

    /// Draws an operation and begins it; gives the number of its kind.
    std::size_t begin(Ended onEnd);

    /// By their numbers.
    [[nodiscard]] std::vector<std::string> kinds() const;

    [[nodiscard]] Tarnwick_API::TarnwickApi& reader() const { return *reader_; }

private:
    struct Kind {
        std::string name;
        std::function<void(Ended)> begin;
    };

    void addReading();
    void addStopping();

    std::shared_ptr<Tarnwick_API::Platform::MainQueue> queue_;
    std::mt19937_64 lot_;
    std::shared_ptr<Tarnwick_API::TarnwickApi> reader_;
    std::vector<std::shared_ptr<Visitor>> visitors_;
    /// Those that nobody waits for.
    std::vector<std::shared_ptr<Visitor>> idle_;
    std::vector<Kind> reading_;
};

}  // namespace Benchmarks
