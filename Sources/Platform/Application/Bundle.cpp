#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Application/SystemBundle.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide mainBundle{&ProcessValues::mainBundle};

}  // namespace

Bundle Bundle::lookingUp(Lookup information, TextLookup localizedTexts) {
    Bundle bundle;
    bundle.informationLookup_ = std::move(information);
    bundle.textLookup_ = std::move(localizedTexts);
    return bundle;
}

std::optional<std::string> Bundle::text(std::string_view key) const {
    if (informationLookup_) {
        return informationLookup_(key);
    }
    const auto entry = information_.find(key);
    if (entry == information_.end()) {
        return std::nullopt;
    }
    const auto* text = std::get_if<std::string>(&entry->second);
    return text != nullptr ? std::optional{*text} : std::nullopt;
}

std::string Bundle::localizedText(std::string_view key, std::string_view defaultText) const {
    if (textLookup_) {
        return textLookup_(key, defaultText);
    }
    const auto entry = localizedTexts_.find(key);
    return entry != localizedTexts_.end() ? entry->second : std::string{defaultText};
}

std::shared_ptr<const Bundle> Bundle::main() {
    if (auto bundle = mainBundle.get()) {
        return bundle;
    }
    return std::make_shared<const Bundle>(systemBundle());
}

void Bundle::setMain(Bundle bundle) {
    mainBundle.set(std::make_shared<const Bundle>(std::move(bundle)));
}

}  // namespace Tarnwick_API::Platform
