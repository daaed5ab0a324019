#include "WatchedSession.hpp"

#include <utility>

namespace TarnwickClient {

bool WatchedSession::isReachable(std::string_view urlText) const {
    const auto reachable = session_->isReachable(urlText);
    if (!reachable) {
        log_->lastError = "this computer has no network route to the service";
    }
    return reachable;
}

void WatchedSession::send(std::shared_ptr<const Platform::HttpRequest> request, Completion onCompletion) {
    ++log_->tries;
    session_->send(std::move(request),
                   [log = log_, onCompletion = std::move(onCompletion)](Platform::HttpAnswer answer) {
                       log->lastError = answer.error ? answer.error->description : std::string{};
                       onCompletion(std::move(answer));
                   });
}

}  // namespace TarnwickClient
