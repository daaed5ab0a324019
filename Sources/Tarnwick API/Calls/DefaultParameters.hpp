#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// The values that every call sends: see `ApiCallV1::defaultParameters`.
struct DefaultParameters {
    std::string language;
    std::string region;
    std::string version;
    std::optional<std::string> clickId;
    std::int64_t partnersId;

    /// As the user's locale, the main bundle and the preferences say now.
    [[nodiscard]] static DefaultParameters current(std::int64_t partnersId);

    /// Into a map of texts or of parameters, in the place of any of these names.
    template <typename Parameters>
    void assignTo(Parameters& parameters) const {
        parameters.insert_or_assign("language", language);
        parameters.insert_or_assign("region", region);
        parameters.insert_or_assign("version", version);
        parameters.insert_or_assign("os", "mac");
        parameters.insert_or_assign("partnersId", std::to_string(partnersId));
        if (clickId) {
            parameters.insert_or_assign("clickid", *clickId);
        }
    }

    friend bool operator==(const DefaultParameters&, const DefaultParameters&) = default;
};

}  // namespace Tarnwick_API
