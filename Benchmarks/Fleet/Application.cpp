#include "Application.hpp"

#include <utility>

namespace Benchmarks {

using namespace Tarnwick_API;

namespace {

double proportion(std::mt19937_64& lot) {
    return std::uniform_real_distribution<double>{}(lot);
}

}  // namespace

Application::Application(const Surroundings& surroundings)
    : surroundings_{surroundings},
      api_{TarnwickApi::create(
          {.consumerKey = "fleet",
           .consumerSecret = "fleet",
           .partnersId = 7,
           .uuid = *Platform::Uuid::fromString("00000000-0000-4000-8000-000000000000"),
           .keychainService = "fleet",
           .apiUrl = {.live = "api.example.test"},
           .retrySpread = {surroundings.scenario.spread, [&lot = surroundings.lot] { return proportion(lot); }}})} {
}

void Application::begin() {
    const auto& scenario = surroundings_.scenario;
    const auto first = scenario.interval * proportion(surroundings_.lot);
    surroundings_.queue.after(std::chrono::duration_cast<std::chrono::nanoseconds>(first), [this] { takeTurns(); });
    if (proportion(surroundings_.lot) < scenario.disturbed) {
        askAfter(scenario.before + scenario.reaction * proportion(surroundings_.lot));
    }
}

void Application::takeTurns() {
    ask();
    surroundings_.queue.after(std::chrono::duration_cast<std::chrono::nanoseconds>(surroundings_.scenario.interval),
                              [this] { takeTurns(); });
}

void Application::askAfter(Seconds time) {
    surroundings_.queue.after(std::chrono::duration_cast<std::chrono::nanoseconds>(time), [this] { ask(); });
}

void Application::ask() {
    if (std::exchange(isAsking_, true)) {
        return;
    }
    askedAt_ = askedAt_.value_or(surroundings_.queue.now());
    api_->getStatus([this](const std::optional<Status>& status, const std::optional<ApiError>& /*error*/) {
        isAsking_ = false;
        endWith(status.has_value());
    });
}

bool Application::isWaiting() const {
    // No good answer takes so long.
    constexpr Seconds aWhile{1};
    return askedAt_ && surroundings_.queue.now() - *askedAt_ >= aWhile;
}

void Application::endWith(bool isAnswered) {
    if (isAnswered) {
        if (isWaiting()) {
            surroundings_.traffic.recover(surroundings_.queue.now());
        }
        askedAt_.reset();
        return;
    }
    const auto& scenario = surroundings_.scenario;
    if (scenario.again > Seconds{0}) {
        askAfter(scenario.again);
    }
    if (proportion(surroundings_.lot) < scenario.impatient) {
        askAfter(Seconds{std::exponential_distribution<double>{1 / scenario.patience.count()}(surroundings_.lot)});
    }
}

}  // namespace Benchmarks
