#include <Platform/Application/ProcessWide.hpp>

namespace Tarnwick_API::Platform {

ProcessValuesInUse& ProcessValuesInUse::shared() {
    // Never destroyed: other threads may still ask while the process exits.
    static auto& values = *std::make_unique<ProcessValuesInUse>().release();
    return values;
}

}  // namespace Tarnwick_API::Platform
