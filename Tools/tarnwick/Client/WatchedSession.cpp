#include "Client/WatchedSession.hpp"

#include <utility>

namespace TarnwickClient {

namespace {

int& count(TransferLog& log, Tarnwick_API::Platform::HttpAnswer::Source source) {
    switch (source) {
        case Tarnwick_API::Platform::HttpAnswer::Source::cache:
            return log.fromCache;
        case Tarnwick_API::Platform::HttpAnswer::Source::revalidated:
            return log.confirmed;
        case Tarnwick_API::Platform::HttpAnswer::Source::network:
            break;
    }
    return log.fromService;
}

}  // namespace

bool WatchedSession::isReachable(std::string_view urlText) const {
    const auto reachable = session_->isReachable(urlText);
    if (!reachable) {
        log_->lastError = "this computer has no network route to the service";
    }
    return reachable;
}

std::string sourcesText(const TransferLog& log) {
    std::string text;
    const auto add = [&](int count, const char* source) {
        if (count > 0) {
            text.append(text.empty() ? "" : ", ").append(std::to_string(count)).append(source);
        }
    };
    add(log.fromCache, " from the cache");
    add(log.confirmed, " from the cache, confirmed by the service");
    add(log.fromService, " from the service");
    return "Answers: " + (text.empty() ? "none" : text) + ".";
}

void WatchedSession::send(std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request, Completion onCompletion) {
    ++log_->tries;
    session_->send(std::move(request),
                   [log = log_, onCompletion = std::move(onCompletion)](Tarnwick_API::Platform::HttpAnswer answer) {
                       log->lastError = answer.error ? answer.error->description : std::string{};
                       if (!answer.error) {
                           ++count(*log, answer.source);
                       }
                       onCompletion(std::move(answer));
                   });
}

}  // namespace TarnwickClient
