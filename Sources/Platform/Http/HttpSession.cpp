#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <Platform/Http/Caching/CachingTransport.hpp>
#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Http/Transfers/ConnectionTarget.hpp>
#include <Platform/Http/Transfers/CurlTransport.hpp>
#include <Platform/Http/Transport.hpp>
#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Text/CharacterSet.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

void logFailure(const HttpAnswer& answer) {
    if (!answer.error || !DebugChannel::isOpen()) {
        return;
    }
    std::string line{"No answer from "};
    line.append(answer.request->url().host()).append(" (").append(name(answer.error->kind)).append("): ");
    DebugChannel::write(line.append(answer.error->description), "send");
}

/// Hands an answer to who asked for it, on the main queue.
struct Delivery {
    std::shared_ptr<MainQueue> queue;
    HttpSession::Completion completion;

    void operator()(TransportResult result) {
        if (!completion) {
            return;
        }
        struct Call {
            HttpSession::Completion completion;
            HttpAnswer answer;
        };
        // A host's queue may copy its tasks, and an answer is too great for that: so it is shared.
        auto call = std::make_shared<Call>(Call{std::move(completion), std::move(result.answer)});
        // The library's own thread must not end in what a host's queue throws. There is no other way to the main
        // thread: the task is lost, as the queue has it.
        try {
            queue->soon([call = std::move(call)] {
                logFailure(call->answer);
                call->completion(std::move(call->answer));
            });
        } catch (...) {
            DebugChannel::writeException("The main queue has not taken an answer", "send");
        }
    }
};

/// What libcurl would take for the name of a file otherwise.
bool arePinnedKeys(std::string_view keys) {
    constexpr std::string_view prefix = "sha256//";
    constexpr std::size_t digestSize = 44;
    constexpr auto base64 = CharacterSet::alphanumericAnd("+/=");
    while (true) {
        const auto key = keys.substr(0, keys.find(';'));
        if (key.size() != prefix.size() + digestSize || !key.starts_with(prefix) ||
            !base64.containsAll(key.substr(prefix.size()))) {
            return false;
        }
        if (key.size() == keys.size()) {
            return true;
        }
        keys.remove_prefix(key.size() + 1);
    }
}

/// Why no request of a session with this configuration can be sent.
std::optional<std::string> configurationFault(const HttpSessionConfiguration& configuration) {
    const auto isAscii = [](const std::string& rule) {
        return std::all_of(rule.begin(), rule.end(),
                           [](char character) { return static_cast<signed char>(character) > 0; });
    };
    // Of a host in other letters libcurl before 8.17.0 frees the name twice.
    if (!std::all_of(configuration.connectTo.begin(), configuration.connectTo.end(), isAscii)) {
        return "a rule of connectTo is not ASCII";
    }
    for (const auto& [host, keys] : configuration.pinnedPublicKeys) {
        if (!arePinnedKeys(keys)) {
            return "the pinned public keys of " + host + " are not of the form sha256//BASE64";
        }
    }
    return headerFault(configuration.additionalHeaders);
}

class TransportSession final : public HttpSession {
public:
    TransportSession(std::shared_ptr<const HttpSessionConfiguration> configuration,
                     std::unique_ptr<Transport> transport)
        : configuration_{std::move(configuration)},
          fault_{configurationFault(*configuration_)},
          transport_{std::move(transport)} {}

    [[nodiscard]] const HttpHeaders& defaultHeaders() const override { return configuration_->additionalHeaders; }

    [[nodiscard]] bool isReachable(std::string_view urlText) const override {
        const auto target = connectionTarget(urlText, configuration_->connectTo);
        const auto isReachable = configuration_->reachability->isReachable(target);
        if (!isReachable && DebugChannel::isOpen()) {
            const auto url = Url::fromString(target);
            DebugChannel::write(std::string{"No route to "}.append(url ? url->host() : target), "isReachable");
        }
        return isReachable;
    }

    void send(std::shared_ptr<const HttpRequest> request, Completion onCompletion) override {
        sendStoppable(std::move(request), std::move(onCompletion), StopToken{});
    }

    void sendStoppable(std::shared_ptr<const HttpRequest> request, Completion onCompletion,
                       const StopToken& stop) override {
        Delivery deliver{MainQueue::main(), std::move(onCompletion)};
        const auto& fault = request->encodingError() ? request->encodingError() : fault_;
        if (fault) {
            auto answer = failedAnswer({HttpError::Kind::encoding, *fault});
            answer.request = std::move(request);
            deliver({std::move(answer)});
        } else {
            transport_->transfer(std::move(request), std::move(deliver), stop);
        }
    }

    void networkChanged() override { transport_->networkChanged(); }

private:
    std::shared_ptr<const HttpSessionConfiguration> configuration_;
    /// Why no request of this session can be sent, if so.
    std::optional<std::string> fault_;
    std::unique_ptr<Transport> transport_;
};

}  // namespace

std::shared_ptr<HttpSession> makeHttpSession(HttpSessionConfiguration configuration) {
    if (!configuration.reachability) {
        configuration.reachability = makeRouteReachability();
    }
    const auto shared = std::make_shared<const HttpSessionConfiguration>(std::move(configuration));
    auto transport =
        std::make_unique<CachingTransport>(std::make_shared<CurlTransport>(shared), shared->cache,
                                           std::shared_ptr<const HttpHeaders>{shared, &shared->additionalHeaders});
    return std::make_shared<TransportSession>(shared, std::move(transport));
}

}  // namespace Tarnwick_API::Platform
