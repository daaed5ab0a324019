#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <curl/curl.h>

namespace Benchmarks {

/// Has the stand-in service spoil a share of the requests, each in a way drawn by lot, and knows what it has spoilt.
class FaultOrders {
public:
    /// The body of a refusal that was ordered, by which it is told from any other.
    static constexpr const char* refusal = "refused by order";

    FaultOrders(std::uint16_t controlPort, double share, std::uint64_t seed);

    /// Orders what is due after this many requests.
    void keepUpWith(std::size_t requests);

    /// How many requests have met each kind.
    struct Met {
        /// Connections that ended before the answer was whole: these the library tries again.
        std::size_t lost = 0;
        std::size_t refused = 0;
        std::size_t undecodable = 0;
        std::size_t late = 0;
    };
    [[nodiscard]] Met met() const;

private:
    struct Kind;
    static const std::vector<Kind>& kinds();
    /// Sends `body`, or asks without one, and gives the answer.
    [[nodiscard]] std::string faults(const std::string& body) const;

    std::string url_;
    double share_;
    std::mt19937_64 lot_;
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_{curl_easy_init(), &curl_easy_cleanup};
    /// The kinds ordered so far, by their numbers, oldest first.
    std::vector<std::size_t> ordered_;
};

}  // namespace Benchmarks
