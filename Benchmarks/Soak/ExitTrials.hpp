#pragma once

#include "ServiceAccess.hpp"
#include "SoakOptions.hpp"

#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace Benchmarks {

/// How a process leaves its load.
enum class ExitWay {
    main,      ///< a return from `main`
    callback,  ///< `exit` in a completion
    thread,    ///< `exit` on another thread, while the main queue runs
};
inline constexpr std::array exitWays{"main", "callback", "thread"};

/// What a child is told.
struct ExitTrial {
    ExitWay way = ExitWay::main;
    /// When to leave, since the load began with a sign-in.
    std::chrono::microseconds moment{0};
};

/// The status that a child asks for, which no crash gives.
constexpr int askedStatus = 42;

/// For the child: carries the load until the moment comes. Returns what `main` is to return.
[[nodiscard]] int leaveInTheMiddle(const ServiceAccess& service, const SoakOptions& options, const ExitTrial& trial);

/// What became of the children that left in one way.
struct ExitCount {
    using Time = std::chrono::duration<double, std::milli>;
    std::size_t asAsked = 0;
    /// Another status, or a signal.
    std::size_t otherwise = 0;
    /// Still there when the bound had passed, and killed.
    std::size_t hanging = 0;
    /// From the moment of leaving to the end of the process.
    Time longest{0};
};

/// For the parent: lets `options.exits` children of this program leave in each way, each at a moment drawn by lot.
[[nodiscard]] std::array<ExitCount, exitWays.size()> tryExits(const ServiceAccess& service, const SoakOptions& options);

}  // namespace Benchmarks
