#include <Tarnwick_API/Platform/Application/WallClock.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedSource{&ProcessValues::wallClockSource};

}  // namespace

WallTime WallClock::now() {
    if (const auto source = installedSource.get()) {
        try {
            return (*source)();
        } catch (...) {
            DebugChannel::writeException("The host's clock has failed", "now");
        }
    }
    return std::chrono::floor<WallTime::duration>(std::chrono::system_clock::now());
}

void WallClock::setSource(std::function<WallTime()> source) {
    installedSource.set(std::move(source));
}

}  // namespace Tarnwick_API::Platform
