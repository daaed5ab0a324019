#include "Fleet.hpp"

#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include "Application.hpp"
#include "ModelledService.hpp"

#include <algorithm>
#include <utility>

namespace Benchmarks {

using namespace Tarnwick_API;

Fleet::Fleet(const Scenario& scenario, std::shared_ptr<Platform::VirtualTimeMainQueue> queue,
             std::shared_ptr<Traffic> traffic)
    : scenario_{scenario}, queue_{std::move(queue)}, lot_{scenario.seed} {
    Platform::MainQueue::setMain(queue_);
    ApiVersion1::setSessionManager(std::make_shared<ModelledService>(scenario_, queue_, traffic));
    applications_.reserve(scenario_.clients);
    for (std::size_t number = 0; number < scenario_.clients; ++number) {
        applications_.push_back(
            std::make_unique<Application>(Application::Surroundings{scenario_, *queue_, *traffic, lot_}));
    }
}

Fleet::~Fleet() {
    ApiVersion1::setSessionManager(nullptr);
    Platform::MainQueue::setMain(nullptr);
}

void Fleet::run() {
    for (const auto& application : applications_) {
        application->begin();
    }
    queue_->advance(std::chrono::duration_cast<std::chrono::nanoseconds>(scenario_.end()));
}

std::size_t Fleet::waiting() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(applications_, [](const auto& application) { return application->isWaiting(); }));
}

}  // namespace Benchmarks
