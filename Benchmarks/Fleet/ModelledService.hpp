#pragma once

#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include "Scenario.hpp"
#include "Traffic.hpp"

#include <memory>
#include <string_view>

namespace Benchmarks {

/// The service as all applications of a fleet see it: there, gone for a while, and then as fast as its capacity lets it
/// be. Takes the place of the network.
class ModelledService final : public Tarnwick_API::Platform::HttpSession {
public:
    ModelledService(const Scenario& scenario, std::shared_ptr<Tarnwick_API::Platform::VirtualTimeMainQueue> queue,
                    std::shared_ptr<Traffic> traffic);

    [[nodiscard]] const Tarnwick_API::Platform::HttpHeaders& defaultHeaders() const override { return headers_; }
    [[nodiscard]] bool isReachable(std::string_view /*urlText*/) const override { return true; }
    void send(std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request, Completion onCompletion) override;

private:
    void reject(Rejection rejection, std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request,
                Completion onCompletion);

    Tarnwick_API::Platform::HttpHeaders headers_;
    Scenario scenario_;
    std::shared_ptr<Tarnwick_API::Platform::VirtualTimeMainQueue> queue_;
    std::shared_ptr<Traffic> traffic_;
    /// When the service will have done all that it has taken.
    Seconds busyUntil_{0};
};

}  // namespace Benchmarks
