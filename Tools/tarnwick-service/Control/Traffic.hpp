#pragma once

#include "Http/Exchange.hpp"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace TarnwickService {

struct Counters {
    std::uint64_t connections = 0;
    std::uint64_t requests = 0;
    /// Answers with a status of 400 and above, faults included.
    std::uint64_t refusals = 0;
    /// Text of the latest of them.
    std::string lastRefusal;
    /// By method and path below the base path, as in "GET users/me". Access tokens and server ids are left out:
    /// "DELETE users/me/access_tokens/", "GET servers/". Paths that the service does not know count as "other".
    std::map<std::string, std::uint64_t> requestsByPath;
};

struct RecordedRequest {
    std::string method;
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
};

/// Counts what passes, and remembers the latest of it. Every operation may be called from any thread.
class Traffic {
public:
    explicit Traffic(bool record) : record_(record) {}

    void countConnection();
    void countRequest(const Request& request);
    void countAnswer(const Answer& answer);
    void reset();

    Counters counters() const;
    std::vector<RecordedRequest> recorded() const;

private:
    const bool record_;
    mutable std::mutex mutex_;
    Counters counters_;
    std::deque<RecordedRequest> recorded_;
};

}  // namespace TarnwickService
