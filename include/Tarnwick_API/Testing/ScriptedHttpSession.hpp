#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API::Testing {

/// A session without a network: answers come from a script, on the main queue, and every request is kept. Until it has
/// a script it answers with the status 200 and an empty body.
///
///     session->script({ScriptedHttpSession::failure(), ScriptedHttpSession::answer(200, R"({"realip":
///     "192.0.2.1"})")});
///
/// Thread: the main one alone.
class ScriptedHttpSession final : public Platform::HttpSession {
public:
    using Answer = std::function<Platform::HttpAnswer(std::shared_ptr<const Platform::HttpRequest>)>;

    /// An answer of the service; one without a body is what only a host's own session can give.
    [[nodiscard]] static Answer answer(std::int64_t status, std::optional<Platform::Bytes> body,
                                       Platform::HttpHeaders headers = {});
    /// A failed transfer, which the library tries again.
    [[nodiscard]] static Answer failure(Platform::HttpError::Kind kind = Platform::HttpError::Kind::connectionLost);

    /// Answers in turn; when the script has run out the last answer stays. Throws std::invalid_argument for an empty
    /// script.
    void script(std::vector<Answer> answers);

    [[nodiscard]] const Platform::HttpHeaders& defaultHeaders() const override { return headers_; }
    [[nodiscard]] bool isReachable(std::string_view urlText) const override;
    void send(std::shared_ptr<const Platform::HttpRequest> request, Completion onCompletion) override;

    /// How often the service is in reach; afterwards no more.
    std::size_t reachableTimes = (std::numeric_limits<std::size_t>::max)();
    /// What was sent, oldest first.
    std::vector<std::shared_ptr<const Platform::HttpRequest>> requests;
    /// The targets whose reach was asked for, oldest first.
    [[nodiscard]] const std::vector<std::string>& askedFor() const { return askedFor_; }

private:
    Platform::HttpHeaders headers_{{"User-Agent", "Tests"}};
    std::deque<Answer> script_{answer(200, Platform::Bytes{})};
    mutable std::vector<std::string> askedFor_;
};

}  // namespace Tarnwick_API::Testing
