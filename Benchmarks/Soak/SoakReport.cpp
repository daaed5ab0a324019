#include "SoakReport.hpp"

#include <cmath>
#include <cstddef>
#include <cstdio>

namespace Benchmarks {

namespace {

/// Prints one demand and whether it is met.
bool demand(const char* what, double value, const char* relation, double limit, bool isMet) {
    std::printf("  %-44s %12.0f   %-9s %12.0f   %s\n", what, value, relation, limit, isMet ? "met" : "MISSED");
    return isMet;
}

bool exactly(const char* what, std::size_t value, std::size_t wanted) {
    return demand(what, static_cast<double>(value), "exactly", static_cast<double>(wanted), value == wanted);
}

bool atMost(const char* what, std::size_t value, double limit) {
    return demand(what, static_cast<double>(value), "at most", limit, static_cast<double>(value) <= limit);
}

bool atLeast(const char* what, std::size_t value, double limit) {
    return demand(what, static_cast<double>(value), "at least", limit, static_cast<double>(value) >= limit);
}

void printKinds(const Load& load, const Load::Count& count) {
    std::printf("\n%-24s %9s %9s %9s %9s %9s %9s %9s\n", "operation", "right", "refused", "undecoded", "no reach",
                "stopped", "proxy", "wrong");
    const auto line = [](const char* name, const Load::Endings& endings) {
        std::printf("%-24s", name);
        for (const auto number : endings) {
            std::printf(" %9zu", number);
        }
        std::puts("");
    };
    const auto kinds = load.kinds();
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        line(kinds[kind].c_str(), count.byKind[kind]);
    }
    line("all", count.endings);
}

/// A line through fewer samples says more of what just then was held than of the run.
constexpr std::size_t leastSamples = 12;

bool printResources(const ResourceTrend& resources) {
    std::printf("\n%-24s %12s %12s %12s %12s   %zu samples\n", "held", "mean", "highest", "growth", "tolerated",
                resources.count());
    const bool isJudged = resources.count() >= leastSamples;
    bool isFlat = true;
    for (const auto& line : resources.lines()) {
        std::printf("%-24s %12.0f %12.0f %12.1f %12.1f   %s\n", line.name.c_str(), line.mean, line.highest, line.growth,
                    line.tolerance,
                    !isJudged       ? "not judged: too short"
                    : line.isFlat() ? "flat"
                                    : "GROWS");
        isFlat = isFlat && (!isJudged || line.isFlat());
    }
    return isFlat;
}

}  // namespace

bool report(const Load& load, const FaultOrders::Met& faults, const SoakOptions& options) {
    const auto count = load.count();
    const auto ended = [&count](Ending ending) { return count.endings[static_cast<std::size_t>(ending)]; };
    const auto begun = static_cast<double>(count.begun);
    std::printf("%zu operations, %zu in flight, over %s, in %.1f s: %.0f a second\n", count.begun, options.inFlight,
                options.http2 ? "HTTP/2" : "HTTP/1.1", count.time.count(), begun / count.time.count());
    std::printf("requests spoilt: %zu connections lost, %zu refused, %zu undecodable, %zu late\n", faults.lost,
                faults.refused, faults.undecodable, faults.late);
    printKinds(load, count);
    bool isGood = printResources(load.resources());

    std::puts("\ndemands");
    // A fault may meet an operation that is stopped just then.
    const auto stopped = static_cast<double>(ended(Ending::stopped));
    const auto refused = static_cast<double>(faults.refused);
    const auto undecodable = static_cast<double>(faults.undecodable);
    // Six attempts in a row have to be lost. Ten times as many as chance gives still shows what goes wrong.
    const double unreachable = 1 + 10 * begun * std::pow(options.faultShare, 6);
    isGood &= exactly("completions never called", count.missing, 0);
    isGood &= exactly("completions called more than once", count.repeated, 0);
    isGood &= exactly("wrong ends", ended(Ending::wrong), 0);
    isGood &= atMost("refused", ended(Ending::refused), refused);
    isGood &= atLeast("refused", ended(Ending::refused), refused - stopped);
    isGood &= atMost("undecodable", ended(Ending::undecodable), undecodable);
    isGood &= atLeast("undecodable", ended(Ending::undecodable), undecodable - stopped);
    isGood &= atMost("not reachable", ended(Ending::notReachable), unreachable);
    isGood &= atMost("attempts failed", count.failedAttempts, static_cast<double>(faults.lost));
    isGood &= atMost("answered by the proxy for the service", ended(Ending::proxyError),
                     options.http2 ? static_cast<double>(faults.lost) : 0);
    return isGood;
}

bool report(const std::array<ExitCount, exitWays.size()>& exits) {
    std::printf("\n%-24s %9s %9s %9s %14s\n", "exit in the middle, by", "as asked", "otherwise", "hanging",
                "longest ms");
    bool isGood = true;
    for (std::size_t way = 0; way < exits.size(); ++way) {
        const auto& count = exits.at(way);
        std::printf("%-24s %9zu %9zu %9zu %14.1f\n", exitWays.at(way), count.asAsked, count.otherwise, count.hanging,
                    count.longest.count());
        isGood = isGood && count.otherwise == 0 && count.hanging == 0;
    }
    return isGood;
}

}  // namespace Benchmarks
