#pragma once

#include <Tarnwick_API/Export.hpp>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace Tarnwick_API::Platform {

/// What the hosting application says of itself: its information dictionary and its localised texts.
///
/// Without a line from the host it is the system's on macOS, read whenever it is asked: the main bundle's Info.plist as
/// it stands, and its localised texts by the application's language. Elsewhere it is empty, and every reader has a
/// fallback. The host's own, filled once at start with `setMain`, takes the place of all of that; nothing is mixed.
/// Keys that this library reads: "CFBundleVersion", "CFBundleShortVersionString", "CFBundleIdentifier",
/// "CFBundleExecutable" and "CFBundleName" of the information, "CountryNameReturn" of the localised texts.
class TARNWICK_API_EXPORT Bundle {
public:
    /// What an entry can be.
    using Value = std::variant<std::string, std::int64_t, double, bool>;
    /// Entries by key.
    using Dictionary = std::map<std::string, Value, std::less<>>;
    /// Localised texts by key.
    using Texts = std::map<std::string, std::string, std::less<>>;
    /// Gives an entry of the information when it is text, or none.
    using Lookup = std::function<std::optional<std::string>(std::string_view key)>;
    /// Gives the text for `key`, or `defaultText`.
    using TextLookup = std::function<std::string(std::string_view key, std::string_view defaultText)>;

    Bundle() = default;
    explicit Bundle(Dictionary information, Texts localizedTexts = {})
        : information_{std::move(information)}, localizedTexts_{std::move(localizedTexts)} {}

    /// A bundle that holds nothing and asks, on the reader's thread, for each entry when it is read.
    [[nodiscard]] static Bundle lookingUp(Lookup information, TextLookup localizedTexts);

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
    Lookup informationLookup_;
    TextLookup textLookup_;
};

}  // namespace Tarnwick_API::Platform
