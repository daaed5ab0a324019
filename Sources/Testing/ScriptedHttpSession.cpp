#include <Tarnwick_API/Testing/ScriptedHttpSession.hpp>

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <stdexcept>
#include <utility>

namespace Tarnwick_API::Testing {

ScriptedHttpSession::Answer ScriptedHttpSession::answer(std::int64_t status, std::optional<Platform::Bytes> body,
                                                        Platform::HttpHeaders headers) {
    return [status, body = std::move(body),
            headers = std::move(headers)](std::shared_ptr<const Platform::HttpRequest> request) {
        return Platform::HttpAnswer{std::move(request), std::nullopt, Platform::HttpResponse{status, headers}, body};
    };
}

ScriptedHttpSession::Answer ScriptedHttpSession::failure(Platform::HttpError::Kind kind) {
    return [kind](std::shared_ptr<const Platform::HttpRequest> request) {
        return Platform::HttpAnswer{std::move(request), Platform::HttpError{kind, "as the script says"}, std::nullopt,
                                    Platform::Bytes{}};
    };
}

void ScriptedHttpSession::script(std::vector<Answer> answers) {
    if (answers.empty()) {
        throw std::invalid_argument{"ScriptedHttpSession::script: no answer"};
    }
    script_.assign(answers.begin(), answers.end());
}

bool ScriptedHttpSession::isReachable(std::string_view urlText) const {
    askedFor_.emplace_back(urlText);
    return askedFor_.size() <= reachableTimes;
}

void ScriptedHttpSession::send(std::shared_ptr<const Platform::HttpRequest> request, Completion onCompletion) {
    requests.push_back(request);
    auto next = script_.front();
    if (script_.size() > 1) {
        script_.pop_front();
    }
    Platform::MainQueue::main()->soon([request = std::move(request), next = std::move(next),
                                       onCompletion = std::move(onCompletion)] { onCompletion(next(request)); });
}

}  // namespace Tarnwick_API::Testing
