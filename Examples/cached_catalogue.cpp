// An application that installs a response cache, and tells its windows of a new catalogue by an event of its own.
// Usage: example_cached_catalogue HOST[:PORT] CA-FILE

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Tarnwick_API::Country;
using Tarnwick_API::Event;

/// The application's model: reads the countries, and says when there are new ones.
class Catalogue {
public:
    explicit Catalogue(std::shared_ptr<Tarnwick_API::TarnwickApi> api) : api_{std::move(api)} {}

    [[nodiscard]] Event<std::vector<Country>>& changed() const { return *changed_; }

    void read() {
        api_->getCountries(Tarnwick_API::ServerProfile::general, std::nullopt, std::nullopt,
                           [changed = changed_](const auto& countries, const auto& /*error*/) {
                               changed->raise(countries.value_or(std::vector<Country>{}));
                           });
    }

private:
    std::shared_ptr<Tarnwick_API::TarnwickApi> api_;
    std::shared_ptr<Event<std::vector<Country>>> changed_ = Event<std::vector<Country>>::create();
};

/// A window that shows how many there are.
class Window {
public:
    void show(const std::vector<Country>& countries) {
        std::cout << countries.size() << " countries\n";
        ++shown_;
    }
    [[nodiscard]] std::size_t shown() const noexcept { return shown_; }

private:
    std::size_t shown_ = 0;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    using namespace Tarnwick_API;
    if (argumentCount != 3) {
        std::cerr << "usage: example_cached_catalogue HOST[:PORT] CA-FILE\n";
        return EXIT_FAILURE;
    }
    // For every session without a cache of its own. Answers are kept as long as the service allows, and never longer
    // than ten minutes.
    constexpr std::size_t memory = 4U << 20U;
    constexpr std::size_t disk = 20U << 20U;
    Platform::UrlCache::setShared(std::make_shared<CustomUrlCache>(memory, disk, std::nullopt));

    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    // This program has no event loop of its own.
    const auto mainQueue = Platform::BuiltInMainQueue::shared();
    Platform::MainQueue::setMain(mainQueue);

    Catalogue catalogue{TarnwickApi::create(
        ApiVersion::v1, "tarnwick-demo-key", "tarnwick-demo-secret", 7, Platform::Uuid::random(), "example",
        FilterIds{11, 12, 13, 14, 22, 23, 32, 33, 41}, ApiUrl{arguments[1], arguments[1], arguments[1], arguments[1]})};
    // Called while the window lives; it need not say that it goes.
    const auto window = std::make_shared<Window>();
    const auto subscription = catalogue.changed().addHandler(window, &Window::show);

    for (std::size_t reads = 1; reads <= 2; ++reads) {
        // The second answer comes from the cache, if the service lets it be kept.
        catalogue.read();
        mainQueue->runUntil([&] { return window->shown() == reads; });
    }
    std::cout << "The cache has " << Platform::UrlCache::shared()->currentMemoryUsage() << " bytes in memory.\n";
    // A handler keeps its event alive until it is disposed of.
    subscription->dispose();
    return EXIT_SUCCESS;
}
