#pragma once

#include <Platform/Http/Transport.hpp>

#include <atomic>
#include <memory>

namespace Tarnwick_API::Platform {

class IoThread;
class TransferGroup;

/// Sends requests with one session's configuration, by libcurl, on the process's I/O thread.
class CurlTransport final : public Transport {
public:
    /// Throws std::bad_alloc.
    explicit CurlTransport(std::shared_ptr<const HttpSessionConfiguration> configuration);
    CurlTransport(const CurlTransport&) = delete;
    CurlTransport& operator=(const CurlTransport&) = delete;
    ~CurlTransport() override;

    void transfer(std::shared_ptr<const HttpRequest> request, OnAnswer onAnswer, StopToken stop) override;
    void networkChanged() override;

private:
    std::shared_ptr<TransferGroup> group_;
    /// None before the first transfer: until then there is nothing to cancel.
    std::atomic<IoThread*> thread_ = nullptr;
};

}  // namespace Tarnwick_API::Platform
