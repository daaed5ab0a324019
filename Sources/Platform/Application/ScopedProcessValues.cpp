#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include <Platform/Application/ProcessWide.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

ScopedProcessValues::ScopedProcessValues(Start start) : remembered_{std::make_unique<ProcessValues>()} {
    ProcessValuesInUse::shared().change([&](ProcessValues& values) {
        *remembered_ = values;
        if (start == Start::defaults) {
            values = {};
        }
    });
}

ScopedProcessValues::~ScopedProcessValues() {
    ProcessValuesInUse::shared().change([this](ProcessValues& values) { std::swap(values, *remembered_); });
}

}  // namespace Tarnwick_API::Platform
