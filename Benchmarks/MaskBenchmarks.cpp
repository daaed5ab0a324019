#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include "Measurements.hpp"
#include "PasswordMask.hpp"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace Benchmarks {
namespace {

using Clock = std::chrono::steady_clock;

/// The mask as a regular expression, compiled to machine code.
class ExpressionMask {
public:
    ExpressionMask() {
        int error = 0;
        std::size_t place = 0;
        code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), PCRE2_CASELESS, &error,
                                  &place, nullptr));
        pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE);
    }

    [[nodiscard]] std::string operator()(const std::string& text) const {
        std::string result(text.size() + mask.size(), '\0');
        auto size = result.size();
        pcre2_substitute(code_.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0,
                         PCRE2_SUBSTITUTE_GLOBAL, nullptr, nullptr, reinterpret_cast<PCRE2_SPTR>(mask.data()),
                         mask.size(), reinterpret_cast<PCRE2_UCHAR*>(result.data()), &size);
        result.resize(size);
        return result;
    }

private:
    struct Free {
        void operator()(pcre2_code* code) const noexcept { pcre2_code_free(code); }
    };
    static constexpr std::string_view pattern = R"((password\\":\\")[^\n\v\f\r]*(\\",\\"))";
    static constexpr std::string_view mask = "${1}OBFUSCATED$2";
    std::unique_ptr<pcre2_code, Free> code_;
};

/// Of a request with a body of 1 MB, in which nothing is to be masked.
std::string greatRendering() {
    using namespace Tarnwick_API::Platform;
    constexpr int members = 18000;
    Parameters parameters;
    for (int number = 0; number < members; ++number) {
        parameters.emplace("member_" + std::to_string(number), "the wording of a value, somewhat long");
    }
    const auto url = Url::fromString("https://api.example/vb/users");
    return HttpRequest{HttpMethod::post, url.value(), parameters, ParameterEncoding::json, {}}.curlRendering({});
}

template <typename Mask>
double medianMicroseconds(const std::string& text, const Mask& mask) {
    constexpr int rounds = 20;
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        auto copy = text;
        const auto begin = Clock::now();
        benchmark::DoNotOptimize(mask(std::move(copy)));
        times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - begin).count());
    }
    return median(times);
}

void maskOfGreatRendering(benchmark::State& state) {
    const auto rendering = greatRendering();
    const ExpressionMask expression;
    if (expression(rendering) != rendering) {
        state.SkipWithError("something was masked");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        note("mask of 1 MB: us", "library", medianMicroseconds(rendering, &Tarnwick_API::obfuscateLoginString));
        note("mask of 1 MB: us", "PCRE2 with JIT", medianMicroseconds(rendering, expression));
    }
}

BENCHMARK(maskOfGreatRendering)->Iterations(1);

}  // namespace
}  // namespace Benchmarks
