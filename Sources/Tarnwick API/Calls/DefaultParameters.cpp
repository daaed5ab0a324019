#include <Calls/DefaultParameters.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>

namespace Tarnwick_API {

DefaultParameters DefaultParameters::current(std::int64_t partnersId) {
    const auto locale = Platform::Locale::current();
    return {.language = locale.languageCode().value_or("en"),
            .region = locale.regionCode().value_or("US"),
            .version = Platform::Bundle::main()->text("CFBundleVersion").value_or("7.x"),
            .clickId = Platform::Preferences::text("cid"),
            .partnersId = partnersId};
}

}  // namespace Tarnwick_API
