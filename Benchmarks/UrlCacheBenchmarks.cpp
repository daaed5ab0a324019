#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

namespace Benchmarks {
namespace {

constexpr std::size_t entrySize = 20'000;
constexpr int entries = 10'000;
constexpr std::size_t plenty = std::size_t{1} << 40U;

class CacheFolder {
public:
    CacheFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "url-cache-benchmarks-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data()) == nullptr ? std::filesystem::path{} : std::filesystem::path{pattern};
    }
    CacheFolder(const CacheFolder&) = delete;
    CacheFolder& operator=(const CacheFolder&) = delete;
    ~CacheFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    [[nodiscard]] std::string path() const { return path_; }

private:
    std::filesystem::path path_;
};

Tarnwick_API::Platform::HttpRequest requestOf(std::int64_t number) {
    const auto url =
        Tarnwick_API::Platform::Url::fromString("https://api.example/v1/servers?number=" + std::to_string(number));
    return {
        Tarnwick_API::Platform::HttpMethod::get, url.value(), {}, Tarnwick_API::Platform::ParameterEncoding::url, {}};
}

std::shared_ptr<const Tarnwick_API::Platform::CachedUrlResponse> answerOf(std::size_t size) {
    Tarnwick_API::Platform::CachedUrlResponse response;
    response.response.status = 200;
    response.response.headers = {{"content-type", "application/json"}, {"etag", "\"0123456789abcdef\""}};
    response.body = std::make_shared<const Tarnwick_API::Platform::Bytes>(size, 'x');
    response.userInformation.emplace().emplace("CachedDate", Tarnwick_API::Platform::WallClock::now());
    return std::make_shared<const Tarnwick_API::Platform::CachedUrlResponse>(std::move(response));
}

/// Arguments: entries in the cache; whether it is full, so that each store evicts.
void storeInUrlCache(benchmark::State& state) {
    const CacheFolder folder;
    Tarnwick_API::Platform::UrlCache cache{0, plenty, folder.path()};
    const auto answer = answerOf(entrySize);
    std::int64_t number = 0;
    while (number < state.range(0)) {
        cache.storeCachedResponse(answer, requestOf(number++));
    }
    if (state.range(1) != 0) {
        cache.setDiskCapacity(cache.currentDiskUsage());
    }
    for ([[maybe_unused]] auto iteration : state) {
        cache.storeCachedResponse(answer, requestOf(number++));
    }
}

/// Arguments: entries in the cache; its memory capacity.
void lookUpInUrlCache(benchmark::State& state) {
    const CacheFolder folder;
    Tarnwick_API::Platform::UrlCache cache{static_cast<std::size_t>(state.range(1)), plenty, folder.path()};
    const auto answer = answerOf(entrySize);
    for (std::int64_t number = 0; number < state.range(0); ++number) {
        cache.storeCachedResponse(answer, requestOf(number));
    }
    std::int64_t number = 0;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(cache.cachedResponse(requestOf(number)));
        number = (number + 7919) % state.range(0);
    }
}

BENCHMARK(storeInUrlCache)->Args({100, 0})->Args({entries, 0})->Args({100, 1})->Args({entries, 1})->Iterations(2000);
BENCHMARK(lookUpInUrlCache)
    ->Args({100, 0})
    ->Args({entries, 0})
    ->Args({100, std::int64_t{1} << 40U})
    ->Args({entries, std::int64_t{1} << 40U})
    ->Iterations(20'000);

}  // namespace
}  // namespace Benchmarks
