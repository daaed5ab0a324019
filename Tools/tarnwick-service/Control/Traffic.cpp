#include "Control/Traffic.hpp"

#include "Api/Router.hpp"

#include <algorithm>
#include <string_view>

namespace TarnwickService {
namespace {

constexpr std::size_t mostRecorded = 1000;

// A closed set of names, whatever clients ask for: the counts must not grow without bound.
std::string_view countedPath(const Request& request) {
    const std::string_view path = pathBelowBase(request.path());
    const auto operations = Router::operations();
    const auto found =
        std::ranges::find_if(operations, [&](const auto& operation) { return operation.restOf(path).has_value(); });
    return path.size() == request.path().size() || found == operations.end() ? "other" : found->path;
}

}  // namespace

void Traffic::countConnection() {
    const std::lock_guard lock(mutex_);
    ++counters_.connections;
}

void Traffic::countRequest(const Request& request) {
    std::string name(request.method.substr(0, 8));
    name += ' ';
    name += countedPath(request);
    const std::lock_guard lock(mutex_);
    ++counters_.requests;
    ++counters_.requestsByPath[name];
    if (!record_) {
        return;
    }
    RecordedRequest copy{std::string(request.method), std::string(request.target), {}, std::string(request.body)};
    for (const auto& [header, value] : request.headers) {
        copy.headers.emplace_back(header, value);
    }
    recorded_.push_back(std::move(copy));
    if (recorded_.size() > mostRecorded) {
        recorded_.pop_front();
    }
}

void Traffic::countAnswer(const Answer& answer) {
    constexpr unsigned firstErrorStatus = 400;
    if (answer.status >= firstErrorStatus) {
        const std::lock_guard lock(mutex_);
        ++counters_.refusals;
        counters_.lastRefusal = answer.bytes();
    }
}

void Traffic::reset() {
    const std::lock_guard lock(mutex_);
    counters_ = {};
    recorded_.clear();
}

Counters Traffic::counters() const {
    const std::lock_guard lock(mutex_);
    return counters_;
}

std::vector<RecordedRequest> Traffic::recorded() const {
    const std::lock_guard lock(mutex_);
    return {recorded_.begin(), recorded_.end()};
}

}  // namespace TarnwickService
