#include <Tarnwick_API/Calls/LoginError.hpp>

#include <Platform/Text/CaseMapping.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace Tarnwick_API {

namespace {

struct Row {
    LoginError::Value error;
    LoginResponseType type;
    std::string_view text;
};

constexpr std::array rows{
    Row{LoginError::loginRequired, LoginResponseType::loginRequired, "NOT LOGGED IN"},
    Row{LoginError::invalidConsumerRights, LoginResponseType::invalidConsumerRights, "INVALID CONSUMER ACCESS RIGHTS"},
    Row{LoginError::invalidConsumerKey, LoginResponseType::invalidConsumerKey, "INVALID CONSUMER KEY"},
    Row{LoginError::consumerKeyMissing, LoginResponseType::consumerKeyMissing, "CONSUMER KEY MISSING OR INVALID"},
};

/// More than any text of the table takes before it is in upper case.
constexpr std::size_t longestBeginning = 128;

}  // namespace

std::string_view rawValue(LoginResponseType type) noexcept {
    return rows.at(static_cast<std::size_t>(type)).text;
}

template <std::same_as<LoginResponseType> Enumeration>
std::optional<Enumeration> fromRawValue(std::string_view text) noexcept {
    const auto* const row = std::find_if(rows.begin(), rows.end(), [text](const Row& row) { return row.text == text; });
    return row == rows.end() ? std::nullopt : std::optional{row->type};
}
template std::optional<LoginResponseType> fromRawValue<LoginResponseType>(std::string_view) noexcept;

std::optional<LoginError> LoginError::from(std::string_view responseText) {
    const auto beginning = Platform::upperCased(responseText.substr(0, longestBeginning));
    const auto* const row = std::find_if(rows.begin(), rows.end(),
                                         [&beginning](const Row& row) { return beginning.starts_with(row.text); });
    return row == rows.end() ? std::nullopt : std::optional<LoginError>{row->error};
}

std::string_view LoginError::responseText() const noexcept {
    const auto* const row =
        std::find_if(rows.begin(), rows.end(), [this](const Row& row) { return row.error == value_; });
    return row == rows.end() ? std::string_view{} : row->text;
}

std::string_view LoginError::localizedDescription() const noexcept {
    switch (value_) {
        case loginRequired:
            return "Not signed in.";
        case invalidConsumerRights:
            return "The application lacks the right to do this.";
        case invalidConsumerKey:
            return "The application's key is not valid.";
        case consumerKeyMissing:
            return "The application's key is missing or not valid.";
        case noOauthToken:
            return "The service gave no access token.";
        case qvUserMigrationRequired:
            break;
    }
    return "The account must be migrated first.";
}

}  // namespace Tarnwick_API
