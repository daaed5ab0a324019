#include "ExitTrials.hpp"

#include "Load.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <random>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace Benchmarks {

namespace {

using Clock = std::chrono::steady_clock;

/// A process that is still there by then hangs. Whole seconds are for a machine under load, and for sanitizers.
constexpr std::chrono::seconds longestExit{20};
/// From before the first connection to well into the load.
constexpr std::chrono::microseconds latestMoment{250'000};

/// Tells the parent when the child leaves: both have the same clock.
void noteMoment() {
    const auto now = Clock::now();
    static_cast<void>(::write(STDOUT_FILENO, &now, sizeof now));
}

[[noreturn]] void leave() {
    noteMoment();
    std::exit(askedStatus);  // NOLINT(concurrency-mt-unsafe): that is what is tried
}

class Pipe {
public:
    Pipe() {
        if (::pipe2(ends_.data(), O_CLOEXEC) != 0) {
            throw std::system_error{errno, std::generic_category(), "pipe2"};
        }
    }
    ~Pipe() {
        closeWriting();
        ::close(ends_[0]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    [[nodiscard]] int reading() const noexcept { return ends_[0]; }
    [[nodiscard]] int writing() const noexcept { return ends_[1]; }
    void closeWriting() noexcept {
        if (const int end = std::exchange(ends_[1], -1); end >= 0) {
            ::close(end);
        }
    }

private:
    std::array<int, 2> ends_{-1, -1};
};

/// What the child has written, when it has ended; none when it has not ended in time.
std::optional<std::string> readToTheEnd(int descriptor) {
    std::string text;
    const auto limit = Clock::now() + longestExit + latestMoment;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now());
        pollfd waiting{descriptor, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) == 0) {
            return std::nullopt;
        }
        std::array<char, 64> piece{};
        const auto size = ::read(descriptor, piece.data(), piece.size());
        if (size == 0) {
            return text;
        }
        text.append(piece.data(), static_cast<std::size_t>(size > 0 ? size : 0));
    }
}

pid_t start(std::vector<std::string> command, const Pipe& pipe) {
    std::vector<char*> arguments;
    for (auto& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe.writing(), STDOUT_FILENO);
    pid_t child = -1;
    const int error = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error{error, std::generic_category(), "posix_spawn"};
    }
    return child;
}

void observe(std::vector<std::string> command, ExitCount& count) {
    Pipe pipe;
    const auto child = start(std::move(command), pipe);
    pipe.closeWriting();
    const auto written = readToTheEnd(pipe.reading());
    const auto end = Clock::now();
    if (!written) {
        ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    Clock::time_point left;
    if (!written) {
        ++count.hanging;
    } else if (!WIFEXITED(status) || WEXITSTATUS(status) != askedStatus || written->size() != sizeof left) {
        ++count.otherwise;
    } else {
        ++count.asAsked;
        written->copy(reinterpret_cast<char*>(&left), sizeof left);
        count.longest = std::max<ExitCount::Time>(count.longest, end - left);
    }
}

}  // namespace

int leaveInTheMiddle(const ServiceAccess& service, const SoakOptions& options, const ExitTrial& trial) {
    Load load{service, options};
    std::thread leaving;
    switch (trial.way) {
        case ExitWay::main:
            load.runFor(trial.moment);
            noteMoment();
            return askedStatus;
        case ExitWay::callback:
            load.setOnEnd([moment = Clock::now() + trial.moment] {
                if (Clock::now() >= moment) {
                    leave();
                }
            });
            break;
        case ExitWay::thread:
            leaving = std::thread{[moment = trial.moment] {
                std::this_thread::sleep_for(moment);
                leave();
            }};
            break;
    }
    load.runFor(longestExit * 2);
    // Nobody has left.
    return EXIT_FAILURE;
}

std::array<ExitCount, exitWays.size()> tryExits(const ServiceAccess& service, const SoakOptions& options) {
    std::array<ExitCount, exitWays.size()> counts;
    std::mt19937_64 lot{options.seed};
    for (std::size_t number = 0; number < options.exits; ++number) {
        for (std::size_t way = 0; way < exitWays.size(); ++way) {
            const auto moment = std::uniform_int_distribution<std::int64_t>{0, latestMoment.count()}(lot);
            observe({"tarnwick_soak", "--leave", exitWays.at(way), "--leave-after", std::to_string(moment), "--host",
                     service.host, "--roots", service.caFile, "--proxy-port", std::to_string(service.proxyPort),
                     "--in-flight", std::to_string(options.inFlight), "--seed", std::to_string(lot())},
                    counts.at(way));
        }
    }
    return counts;
}

}  // namespace Benchmarks
