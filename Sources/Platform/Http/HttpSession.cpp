#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Caching/CacheThread.hpp>
#include <Platform/Http/Caching/CachedExchange.hpp>
#include <Platform/Http/Transfers/ConnectionTarget.hpp>
#include <Platform/Http/Transfers/IoThread.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

namespace {

class CurlHttpSession final : public HttpSession {
public:
    explicit CurlHttpSession(HttpSessionConfiguration configuration)
        : state_{std::make_shared<SessionState>(std::move(configuration))} {}

    CurlHttpSession(const CurlHttpSession&) = delete;
    CurlHttpSession& operator=(const CurlHttpSession&) = delete;

    ~CurlHttpSession() override {
        state_->drop();
        // An exchange that comes to the I/O thread only now finds that the session was dropped.
        if (state_->hadTransfers()) {
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
        Exchange exchange{state_, std::move(request), std::move(onCompletion), MainQueue::main(), nullptr, nullptr};
        if (fault) {
            fail(std::move(exchange), {HttpError::Kind::encoding, *fault});
            return;
        }
        CacheThread* const cacheThread = attachCache(exchange);
        if (cacheThread != nullptr) {
            cacheThread->lookUp(std::move(exchange));
        } else {
            IoThread::transfer(std::move(exchange));
        }
    }

private:
    std::shared_ptr<SessionState> state_;
};

}  // namespace

std::shared_ptr<HttpSession> makeHttpSession(HttpSessionConfiguration configuration) {
    return std::make_shared<CurlHttpSession>(std::move(configuration));
}

}  // namespace Tarnwick_API::Platform
