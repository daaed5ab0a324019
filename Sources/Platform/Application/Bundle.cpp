#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <Platform/Application/ProcessWide.hpp>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide mainBundle{&ProcessValues::mainBundle};

}  // namespace

std::optional<std::string> Bundle::text(std::string_view key) const {
    const auto entry = information_.find(key);
    if (entry == information_.end()) {
        return std::nullopt;
    }
    const auto* text = std::get_if<std::string>(&entry->second);
    return text != nullptr ? std::optional{*text} : std::nullopt;
}

std::string Bundle::localizedText(std::string_view key, std::string_view defaultText) const {
    const auto entry = localizedTexts_.find(key);
    return entry != localizedTexts_.end() ? entry->second : std::string{defaultText};
}

std::shared_ptr<const Bundle> Bundle::main() {
    if (auto bundle = mainBundle.get()) {
        return bundle;
    }
    return std::make_shared<const Bundle>();
}

void Bundle::setMain(Bundle bundle) {
    mainBundle.set(std::make_shared<const Bundle>(std::move(bundle)));
}

}  // namespace Tarnwick_API::Platform
