#include <Tarnwick_API/Platform/HttpSession.hpp>

#include <Platform/Http/ConnectionTarget.hpp>
#include <Platform/Http/IoThread.hpp>
#include <Platform/Http/SessionState.hpp>

#include <atomic>
#include <exception>
#include <utility>

namespace Platform {

namespace {

class CurlHttpSession final : public HttpSession {
public:
    explicit CurlHttpSession(HttpSessionConfiguration configuration)
        : state_{std::make_shared<SessionState>(std::move(configuration))} {}

    CurlHttpSession(const CurlHttpSession&) = delete;
    CurlHttpSession& operator=(const CurlHttpSession&) = delete;

    ~CurlHttpSession() override {
        if (hasSent_) {
            IoThread::shared().cancelAll(state_);
        }
    }

    [[nodiscard]] const HttpHeaders& defaultHeaders() const override {
        return state_->configuration().additionalHeaders;
    }

    [[nodiscard]] bool isReachable(std::string_view urlText) const override {
        const auto& configuration = state_->configuration();
        return configuration.reachability->isReachable(connectionTarget(urlText, configuration.connectTo));
    }

    void send(std::shared_ptr<const HttpRequest> request, Completion onCompletion) override {
        const auto& fault = request->encodingError() ? request->encodingError() : state_->fault();
        Exchange exchange{state_, std::move(request), std::move(onCompletion), MainQueue::main(), nullptr};
        if (fault) {
            fail(std::move(exchange), {HttpError::Kind::encoding, *fault});
            return;
        }
        IoThread* thread = nullptr;
        try {
            thread = &IoThread::shared();
        } catch (const std::exception& error) {
            fail(std::move(exchange), {HttpError::Kind::other, error.what()});
            return;
        }
        hasSent_ = true;
        thread->start(std::move(exchange));
    }

private:
    std::shared_ptr<SessionState> state_;
    std::atomic<bool> hasSent_ = false;
};

}  // namespace

std::shared_ptr<HttpSession> makeHttpSession(HttpSessionConfiguration configuration) {
    return std::make_shared<CurlHttpSession>(std::move(configuration));
}

}  // namespace Platform
