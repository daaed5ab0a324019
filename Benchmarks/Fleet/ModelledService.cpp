#include "ModelledService.hpp"

#include <algorithm>
#include <utility>

namespace Benchmarks {

using namespace Tarnwick_API;

namespace {

/// There and back.
constexpr Seconds roundTrip{0.03};
/// What a session gives up connecting after, with its default time-out of 60 seconds.
constexpr Seconds connectTimeout{45};
/// A request that would wait longer than this at the service is beyond its capacity.
constexpr Seconds longestQueue{1};

constexpr const char* status =
    R"({"realip":"192.0.2.1","required_client_versions":{"mac_7":"7.0.0"},"status_update_interval":600})";

std::chrono::nanoseconds nanoseconds(Seconds time) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time);
}

Platform::HttpAnswer answer(std::shared_ptr<const Platform::HttpRequest> request, std::int64_t status,
                            Platform::Bytes body) {
    return {std::move(request), std::nullopt, Platform::HttpResponse{status, {}}, std::move(body)};
}

}  // namespace

ModelledService::ModelledService(const Scenario& scenario, std::shared_ptr<Platform::VirtualTimeMainQueue> queue,
                                 std::shared_ptr<Traffic> traffic)
    : scenario_{scenario}, queue_{std::move(queue)}, traffic_{std::move(traffic)} {
}

void ModelledService::send(std::shared_ptr<const Platform::HttpRequest> request, Completion onCompletion) {
    const Seconds now = queue_->now();
    traffic_->attempt(now);
    if (now >= scenario_.before && now < scenario_.backAt()) {
        reject(scenario_.duringOutage, std::move(request), std::move(onCompletion));
        return;
    }
    const auto begin = std::max(now, busyUntil_);
    if (begin - now > longestQueue) {
        reject(scenario_.beyondCapacity, std::move(request), std::move(onCompletion));
        return;
    }
    busyUntil_ = begin + Seconds{1 / (scenario_.capacity * scenario_.normalLoad())};
    queue_->after(nanoseconds(busyUntil_ - now + roundTrip),
                  [this, request = std::move(request), onCompletion = std::move(onCompletion)] {
                      traffic_->answer(queue_->now());
                      onCompletion(answer(request, 200, status));
                  });
}

void ModelledService::reject(Rejection rejection, std::shared_ptr<const Platform::HttpRequest> request,
                             Completion onCompletion) {
    const auto later = [&](Seconds delay, Platform::HttpAnswer rejected) {
        queue_->after(nanoseconds(delay), [rejected = std::move(rejected), onCompletion = std::move(onCompletion)] {
            onCompletion(rejected);
        });
    };
    const auto failed = [&](Platform::HttpError::Kind kind) {
        return Platform::HttpAnswer{std::move(request), Platform::HttpError{kind, "modelled"}, std::nullopt,
                                    Platform::Bytes{}};
    };
    switch (rejection) {
        case Rejection::answer503:
            later(roundTrip, answer(std::move(request), 503, "Back soon"));
            break;
        case Rejection::refused:
            later(roundTrip, failed(Platform::HttpError::Kind::cannotConnect));
            break;
        case Rejection::vanished:
            later(connectTimeout, failed(Platform::HttpError::Kind::timedOut));
            break;
    }
}

}  // namespace Benchmarks
