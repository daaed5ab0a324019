#include "Measurements.hpp"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <curl/curl.h>

int main(int argumentCount, char** arguments) {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    // Candidates take turns, so that a machine that slows down slows them all.
    std::vector<std::string> words{arguments[0], "--benchmark_repetitions=5",
                                   "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_report_aggregates_only=true"};
    std::string jsonFile;
    for (int index = 1; index < argumentCount; ++index) {
        if (arguments[index] == std::string_view{"--json"} && index + 1 < argumentCount) {
            jsonFile = arguments[++index];
        } else {
            words.emplace_back(arguments[index]);
        }
    }
    std::vector<char*> pointers;
    pointers.reserve(words.size());
    for (auto& word : words) {
        pointers.push_back(word.data());
    }
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    using Benchmarks::Goal;
    const std::vector goals{
        Goal{"one status request, HTTP/1.1: CPU us", "library", "libcurl", false, 1.2},
        Goal{"one status request, HTTP/2: CPU us", "library", "libcurl", false, 1.2},
        Goal{"one status request, HTTP/1.1: p50 us", "library", "libcurl", false, 1.1},
        Goal{"one status request, HTTP/2: p50 us", "library", "libcurl", false, 1.1},
        Goal{"10,000 at once, HTTP/1.1: requests/s", "library", "libcurl", true, 0.9},
        Goal{"10,000 at once, HTTP/2: requests/s", "library", "libcurl", true, 0.9},
        Goal{"10,000 at once, HTTP/1.1: MB", "library", "", false, 5},
        Goal{"10,000 at once, HTTP/2: MB", "library", "", false, 5},
        Goal{"catalogue of 1 MB, HTTP/1.1: p50 us", "library", "libcurl", false, 1},
        Goal{"catalogue of 1 MB, HTTP/2: p50 us", "library", "libcurl", false, 1},
        Goal{"mask of 1 MB: us", "library", "PCRE2 with JIT", false, 0.35},
        Goal{"request on a new connection: p50 us", "library", "", false, 1500},
        Goal{"10,000 short servers: ms", "library", "simdjson by hand", false, 0.95},
        Goal{"5,000 long servers: us", "library", "simdjson by hand", false, 1.1},
        Goal{"1,000 devices: us", "library", "simdjson by hand", false, 1.1},
        Goal{"10,000 short servers: ms", "nlohmann::json", "library", true, 12},
        Goal{"10,000 short servers: allocations", "library", "", false, 500},
        Goal{"devices: allocations each", "library", "", false, 1.1},
        Goal{"short servers: us each", "library, 100,000", "library, 10,000", false, 1.1},
        Goal{"100,000 short servers: peak / body", "library", "", false, 3.5},
        Goal{"1 MB answer: p50 us", "fetched over loopback", "cache in memory", true, 3},
        Goal{"raise to 10,000 handlers: us", "event", "loop with weak targets", false, 1.25},
        Goal{"main queue held, 10,000 servers: ms", "library", "", false, 16},
    };
    Benchmarks::report(goals);
    if (!jsonFile.empty() && !Benchmarks::writeJson(jsonFile, goals)) {
        std::fprintf(stderr, "%s can't be written\n", jsonFile.c_str());
        return 1;
    }
    return 0;
}
