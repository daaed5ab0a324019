#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace Tarnwick_API::Platform {

/// What the hosting application says of itself: its information dictionary and its localised texts.
///
/// The host fills it once at start with `setMain`; without that it is empty, and every reader has a fallback.
/// Keys that this library reads: "CFBundleVersion", "CFBundleShortVersionString", "CFBundleIdentifier",
/// "CFBundleExecutable" and "CFBundleName" of the information, "CountryNameReturn" of the localised texts.
class Bundle {
public:
    /// What an entry can be.
    using Value = std::variant<std::string, std::int64_t, double, bool>;
    /// Entries by key.
    using Dictionary = std::map<std::string, Value, std::less<>>;
    /// Localised texts by key.
    using Texts = std::map<std::string, std::string, std::less<>>;

    Bundle() = default;
    explicit Bundle(Dictionary information, Texts localizedTexts = {})
        : information_{std::move(information)}, localizedTexts_{std::move(localizedTexts)} {}

    /// The entry of that name when it is text; none when it is missing or of another type.
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const;

    /// The application's own text for `key`, or `defaultText`.
    [[nodiscard]] std::string localizedText(std::string_view key, std::string_view defaultText) const;

    /// The process-wide bundle. Thread: any.
    [[nodiscard]] static std::shared_ptr<const Bundle> main();
    static void setMain(Bundle bundle);

private:
    Dictionary information_;
    Texts localizedTexts_;
};

}  // namespace Tarnwick_API::Platform
