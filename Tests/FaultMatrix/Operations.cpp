#include "Operations.hpp"

#include <type_traits>

namespace Tarnwick_API::Testing {
namespace {

template <typename T>
Completion<T> told(Caller& caller) {
    const auto tell = [&caller](const char* good, const std::optional<ApiError>& error) {
        ++caller.completions;
        caller.outcome = error ? textOf(*error) : good;
    };
    if constexpr (std::is_void_v<T>) {
        return [tell](const std::optional<ApiError>& error) { tell("answer", error); };
    } else {
        return [tell](const std::optional<T>& result, const std::optional<ApiError>& error) {
            tell(result ? "answer" : "no data", error);
        };
    }
}

void login(Caller& caller) {
    caller.api->login("ada", "secret", false, told<User>(caller));
}

}  // namespace

std::string textOf(const ApiError& error) {
    const auto* const response = error.as<ResponseError>();
    const bool isGeneric = response != nullptr && response->kind() == ResponseError::Kind::genericError;
    return isGeneric ? "genericError: " + response->responseText() : std::string{error.localizedDescription()};
}

std::span<const Operation> operations() {
    static const auto migration = textOf(LoginError{LoginError::qvUserMigrationRequired});
    static const auto noToken = textOf(LoginError{LoginError::noOauthToken});
    static const auto taken = textOf(SignupError{SignupError::usernameAlreadyExists});
    using Profile = ServerProfile;
    static const Operation all[] = {
        {"createUser",
         "POST",
         "users",
         [](Caller& c) { c.api->createUser("bob", "pw", told<void>(c)); },
         "answer",
         {{409, taken}},
         taken},
        {"login", "POST", "oauth/access_token", login, noToken, {{202, migration}}, "answer", 0, 1},
        {"login's user", "GET", "users/me", login, "no data", {}, "answer", 1},
        {"restoreSession", "GET", "users/me", [](Caller& c) { c.api->restoreSession(told<User>(c)); }},
        {"setToken", "GET", "users/me",
         [](Caller& c) { c.api->setToken(c.token.token, c.token.secret, told<User>(c)); }},
        {"logout",
         "DELETE",
         "users/me/access_tokens/*",
         [](Caller& c) { c.api->logout(told<void>(c)); },
         "answer",
         {},
         "genericError: Not logged in"},
        {"getCurrentUser", "GET", "users/me", [](Caller& c) { c.api->getCurrentUser(told<User>(c)); }},
        {"updateUser", "PUT", "users/me",
         [](Caller& c) { c.api->updateUser(UserField::email, "new@example.org", told<void>(c)); }, "answer"},
        {"getStatus", "GET", "status", [](Caller& c) { c.api->getStatus(told<Status>(c)); }},
        {"getAuthToken",
         "GET",
         "users/me/authtoken",
         [](Caller& c) { c.api->getAuthToken(told<std::string>(c)); },
         "answer",
         {{202, ""}}},
        {"getDevices", "GET", "users/me/access_tokens",
         [](Caller& c) { c.api->getDevices(told<std::vector<Device>>(c)); }},
        {"getCountries", "GET", "servers",
         [](Caller& c) { c.api->getCountries(Profile::general, 52.5, 13.4, told<std::vector<Country>>(c)); }},
        {"getServers", "GET", "servers",
         [](Caller& c) { c.api->getServers("DE", {}, {}, told<std::vector<Server>>(c)); }},
        {"getCandidateServers", "GET", "servers",
         [](Caller& c) { c.api->getCandidateServers("DE", Profile::streaming, {}, told<std::vector<Server>>(c)); }},
        {"getServer", "GET", "servers/*",
         [](Caller& c) { c.api->getServer(TarnwickService::Catalogue::firstServerId, told<Server>(c)); }},
        {"getDefaultFavorites", "GET", "servers",
         [](Caller& c) { c.api->getDefaultFavorites(told<std::vector<FavoriteEntry>>(c)); }},
    };
    return all;
}

std::string Operation::outcomeOf(unsigned status, const std::string& body) const {
    static const std::map<unsigned, std::string> known{{400, textOf(ResponseError::badRequest())},
                                                       {401, textOf(ResponseError::unauthorized())},
                                                       {403, textOf(ResponseError::forbidden())},
                                                       {404, textOf(ResponseError::notFound())}};
    for (const auto& meanings : {ofStatus, known}) {
        if (const auto own = meanings.find(status); own != meanings.end()) {
            return own->second;
        }
    }
    if (status / 100 == 2) {
        return status == 202 && ofWords != "answer" ? "no data" : ofWords;
    }
    const auto refusal = begin == login && method == "POST" ? LoginError::from(body) : std::nullopt;
    return refusal ? textOf(*refusal) : textOf(ResponseError::genericError(body));
}

}  // namespace Tarnwick_API::Testing
