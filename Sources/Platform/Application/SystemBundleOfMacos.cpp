#include <Platform/Application/SystemBundle.hpp>

#include <Platform/CoreFoundation/CoreFoundationValues.hpp>

#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace Tarnwick_API::Platform {

namespace {

/// As it stands in the file: what is sent and stored must not depend on the user's language.
std::optional<std::string> informationText(std::string_view key) {
    auto* const bundle = CFBundleGetMainBundle();
    auto* const information = bundle == nullptr ? nullptr : CFBundleGetInfoDictionary(bundle);
    const auto name = coreFoundationText(std::string{key});
    return information == nullptr || !name ? std::nullopt : textOf(CFDictionaryGetValue(information, name.get()));
}

std::string localizedText(std::string_view key, std::string_view defaultText) {
    auto* const bundle = CFBundleGetMainBundle();
    const auto name = coreFoundationText(std::string{key});
    const auto value = coreFoundationText(std::string{defaultText});
    if (bundle == nullptr || !name || !value) {
        return std::string{defaultText};
    }
    const Owned<CFStringRef> found{CFBundleCopyLocalizedString(bundle, name.get(), value.get(), nullptr)};
    auto text = textOf(found.get());
    // For what it does not find the system gives the default, but the key when the default is empty.
    return !text || (defaultText.empty() && *text == key) ? std::string{defaultText} : *std::move(text);
}

}  // namespace

Bundle systemBundle() {
    return Bundle::lookingUp(&informationText, &localizedText);
}

}  // namespace Tarnwick_API::Platform
