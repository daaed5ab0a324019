#include "ExitTrials.hpp"
#include "FaultOrders.hpp"
#include "Load.hpp"
#include "ServiceAccess.hpp"
#include "ServiceProcess.hpp"
#include "SoakOptions.hpp"
#include "SoakReport.hpp"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>
#include <curl/curl.h>

namespace {

using namespace Benchmarks;

/// Few, as answers shall be many rather than long.
constexpr std::size_t servers = 200;

int soak(const SoakOptions& options) {
    const ServiceProcess process{{.servers = servers,
                                  .accounts = ServiceAccess::accounts(),
                                  .hasHttp2 = options.http2,
                                  .trustsSystemRoots = false}};
    const ServiceAccess service{process.host(), process.caFile(),
                                options.http2 ? process.http2Port() : std::uint16_t{0}};
    bool isGood = true;
    if (options.requests > 0) {
        FaultOrders faults{process.controlPort(), options.faultShare, options.seed};
        Load load{service, options};
        load.setFaults(&faults);
        if (!load.run()) {
            std::fputs("The reader can't sign in.\n", stderr);
            return EXIT_FAILURE;
        }
        isGood = report(load, faults.met(), options);
    }
    if (options.exits > 0) {
        isGood &= report(tryExits(service, options));
    }
    std::puts(isGood ? "\nAll as it must be." : "\nNOT as it must be.");
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** words) try {
    SoakOptions options;
    std::size_t seconds = 0;
    std::string way;
    std::int64_t moment = 0;
    ServiceAccess service;
    CLI::App program{"Carries a long load against the stand-in service, and leaves in the middle of one."};
    program.add_option("--requests", options.requests, "operations to begin")->capture_default_str();
    program.add_option("--in-flight", options.inFlight, "of them at once")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    program.add_option("--fault-share", options.faultShare, "of the requests that the service spoils")
        ->capture_default_str()
        ->check(CLI::Range(0.0, 0.5));
    program.add_option("--seed", options.seed, "of all that is drawn by lot")->capture_default_str();
    program.add_option("--duration", seconds, "seconds after which none begins any more; 0 for none")
        ->capture_default_str();
    program.add_flag("--http2", options.http2, "over HTTP/2, with nghttpx before the service");
    program.add_option("--exits", options.exits, "processes that leave in the middle, in each way")
        ->capture_default_str();
    // What it tells its own children.
    program.add_option("--leave", way)->group("")->check(CLI::IsMember(exitWays));
    program.add_option("--leave-after", moment)->group("");
    program.add_option("--host", service.host)->group("");
    program.add_option("--roots", service.caFile)->group("");
    program.add_option("--proxy-port", service.proxyPort)->group("");
    CLI11_PARSE(program, count, words);
    options.duration = std::chrono::seconds{seconds};

    curl_global_init(CURL_GLOBAL_DEFAULT);
    // The line that each sign-out writes.
    std::cout.rdbuf(nullptr);
    for (std::size_t number = 0; number < exitWays.size(); ++number) {
        if (way == exitWays.at(number)) {
            return leaveInTheMiddle(service, options,
                                    {ExitWay{static_cast<int>(number)}, std::chrono::microseconds{moment}});
        }
    }
    return soak(options);
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
}
