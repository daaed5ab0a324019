#include <Platform/Http/Transfers/CurlTransport.hpp>

#include <Platform/Http/Transfers/IoThread.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>

#include <exception>
#include <memory>
#include <utility>

namespace Tarnwick_API::Platform {

CurlTransport::CurlTransport(std::shared_ptr<const HttpSessionConfiguration> configuration)
    : group_{std::make_shared<TransferGroup>(std::move(configuration))} {
}

CurlTransport::~CurlTransport() {
    // An exchange that comes to the I/O thread only now is not begun any more.
    group_->drop();
    if (auto* const thread = thread_.load()) {
        thread->cancelAll(std::move(group_));
    }
}

void CurlTransport::transfer(std::shared_ptr<const HttpRequest> request, OnAnswer onAnswer, StopToken stop) {
    IoThread* thread = nullptr;
    try {
        thread = &IoThread::shared();
    } catch (const std::exception& error) {
        auto answer = failedAnswer({HttpError::Kind::other, error.what()});
        answer.request = std::move(request);
        onAnswer({std::move(answer)});
        return;
    }
    thread_ = thread;
    Exchange exchange{group_, std::move(request), std::move(onAnswer)};
    if (stop.canStop()) {
        auto watch = stop.onStop([thread](StopReason /*whatever*/) { thread->cancelStopped(); });
        exchange.stop = std::make_unique<ExchangeStop>(ExchangeStop{std::move(stop), std::move(watch)});
    }
    thread->start(std::move(exchange));
}

void CurlTransport::networkChanged() {
    // Another session's thread, too: sessions share their connections.
    if (auto* const thread = ProcessLongThread<IoThread>::running()) {
        thread->networkChanged();
    }
}

}  // namespace Tarnwick_API::Platform
