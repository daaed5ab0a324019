#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Testing {

/// A session without a network: answers come from a script, on the main queue, and every request is kept.
class ScriptedHttpSession final : public Tarnwick_API::Platform::HttpSession {
public:
    using Answer =
        std::function<Tarnwick_API::Platform::HttpAnswer(std::shared_ptr<const Tarnwick_API::Platform::HttpRequest>)>;

    [[nodiscard]] static Answer answer(std::int64_t status, std::optional<std::string> body) {
        return [status, body = std::move(body)](std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request) {
            return Tarnwick_API::Platform::HttpAnswer{std::move(request), std::nullopt,
                                                      Tarnwick_API::Platform::HttpResponse{status, {}}, body};
        };
    }
    [[nodiscard]] static Answer failure() {
        return [](std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request) {
            return Tarnwick_API::Platform::HttpAnswer{
                std::move(request),
                Tarnwick_API::Platform::HttpError{Tarnwick_API::Platform::HttpError::Kind::connectionLost, "cut"},
                std::nullopt, Tarnwick_API::Platform::Bytes{}};
        };
    }

    /// Answers in turn; when the script has run out the last answer stays.
    void script(std::vector<Answer> answers) { script_.assign(answers.begin(), answers.end()); }

    [[nodiscard]] const Tarnwick_API::Platform::HttpHeaders& defaultHeaders() const override { return headers_; }

    [[nodiscard]] bool isReachable(std::string_view urlText) const override {
        askedFor_.emplace_back(urlText);
        return askedFor_.size() <= reachableTimes;
    }

    void send(std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request, Completion onCompletion) override {
        requests.push_back(request);
        auto next = script_.at(0);
        if (script_.size() > 1) {
            script_.pop_front();
        }
        Tarnwick_API::Platform::MainQueue::main()->soon(
            [request = std::move(request), next = std::move(next), onCompletion = std::move(onCompletion)] {
                onCompletion(next(request));
            });
    }

    /// How often the service is in reach; afterwards no more.
    std::size_t reachableTimes = static_cast<std::size_t>(-1);
    std::vector<std::shared_ptr<const Tarnwick_API::Platform::HttpRequest>> requests;
    [[nodiscard]] const std::vector<std::string>& askedFor() const { return askedFor_; }

private:
    Tarnwick_API::Platform::HttpHeaders headers_{{"User-Agent", "Tests"}};
    std::deque<Answer> script_{answer(200, "")};
    mutable std::vector<std::string> askedFor_;
};

}  // namespace Testing
