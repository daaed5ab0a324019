#include <Platform/Http/Transfers/CurlTransport.hpp>

#include <Platform/Http/Transfers/IoThread.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>

#include <exception>
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
        onAnswer({failedAnswer({HttpError::Kind::other, error.what()})});
        return;
    }
    thread_ = thread;
    auto cancelOnStop = stop.onStop([thread](StopReason /*whatever*/) { thread->cancelStopped(); });
    thread->start({group_, std::move(request), std::move(onAnswer), std::move(stop), std::move(cancelOnStop)});
}

void CurlTransport::networkChanged() {
    // Another session's thread, too: sessions share their connections.
    if (auto* const thread = ProcessLongThread<IoThread>::running()) {
        thread->networkChanged();
    }
}

}  // namespace Tarnwick_API::Platform
