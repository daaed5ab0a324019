#include <Platform/Application/SystemLocale.hpp>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace Tarnwick_API::Platform {

std::string systemLocaleIdentifier() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

std::vector<std::string> systemLanguages() {
    const char* list = std::getenv("LANGUAGE");  // NOLINT(concurrency-mt-unsafe)
    std::string_view rest{list == nullptr ? "" : list};
    std::vector<std::string> identifiers;
    while (!rest.empty()) {
        const auto end = std::min(rest.find(':'), rest.size());
        identifiers.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return identifiers;
}

}  // namespace Tarnwick_API::Platform
