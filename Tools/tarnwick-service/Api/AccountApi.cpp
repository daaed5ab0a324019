#include "Api/AccountApi.hpp"

#include "Api/Refusals.hpp"

#include <algorithm>
#include <array>
#include <ctime>

#include <nlohmann/json.hpp>

namespace TarnwickService {
namespace {

using Json = nlohmann::ordered_json;

Answer json(unsigned status, const Json& value) {
    Answer answer;
    answer.status = status;
    answer.body = value.dump();
    answer.headers.emplace_back("Cache-Control", "no-store");
    return answer;
}

std::string dateText(std::chrono::sys_seconds time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 24> text{};
    const auto size = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return {text.data(), size};
}

void requireMachineId(const std::string& id) {
    constexpr std::string_view shape = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
    const bool fits = std::ranges::equal(id, shape, [](char c, char expected) {
        return expected == '-' ? c == '-' : (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    });
    if (!fits) {
        refuseMalformed("machine id: \"" + id + "\" is not an upper-case UUID");
    }
}

std::string requireText(Parameters& parameters, std::string_view key) {
    std::string value = parameters.require(key);
    if (value.empty()) {
        refuseMalformed("parameter " + std::string(key) + " is empty");
    }
    return value;
}

Machine takeMachine(Parameters& parameters) {
    Machine machine;
    machine.name = requireText(parameters, "x_auth_machinename");
    machine.id = parameters.require("x_auth_machineid");
    requireMachineId(machine.id);
    return machine;
}

Answer tokenRecord(const Session& session) {
    return json(200, {{"oauth_token", session.token},
                      {"oauth_token_secret", session.secret},
                      {"token_id", std::to_string(session.id)},
                      {"user_id", session.accountId},
                      {"expires", nullptr}});
}

}  // namespace

Answer AccountApi::createAccount(const Request& request) {
    check_.authorization(request, SessionRule::ignored);
    check_.fullRights(request);
    Parameters parameters = check_.parameters(request, Encoding::json);
    Account account;
    account.username = requireText(parameters, "username");
    account.password = requireText(parameters, "password");
    account.email = requireText(parameters, "useremail");
    parameters.requireValue("source", "mac");
    const Machine machine = takeMachine(parameters);
    parameters.requireValue("hid", machine.id);
    parameters.requireNoMore();
    const std::optional<Account> created = accounts_.create(account);
    if (!created) {
        return plainText(409, "Username already exists");
    }
    return accountRecord(*created, 201);
}

Answer AccountApi::issueToken(const Request& request) {
    return request.body.starts_with('{') ? signIn(request) : addDevice(request);
}

Answer AccountApi::signIn(const Request& request) {
    // A client signs in with whatever token it still holds, also a dead one.
    check_.authorization(request, SessionRule::ignored);
    check_.fullRights(request);
    Parameters parameters = check_.parameters(request, Encoding::json);
    Machine machine = takeMachine(parameters);
    const std::string username = parameters.require("x_auth_username");
    const std::string password = parameters.require("x_auth_password");
    parameters.requireValue("x_auth_mode", "client_auth");
    const std::optional<std::string> import = parameters.take("import");
    if (import && *import != "1") {
        refuseMalformed("parameter import: \"" + *import + "\" instead of \"1\"");
    }
    parameters.requireNoMore();
    const std::optional<Account> account = accounts_.findByName(username);
    if (!account || account->password != password) {
        return plainText(401, "Wrong username or password");
    }
    if (account->migrationRequired) {
        if (!import) {
            return plainText(202, "Account must be migrated");
        }
        accounts_.completeMigration(account->id);
    }
    return tokenRecord(accounts_.openSession(account->id, std::move(machine)));
}

Answer AccountApi::addDevice(const Request& request) {
    const Session current = session(request);
    check_.parameters(request, Encoding::form).requireNoMore();
    return tokenRecord(accounts_.openSession(current.accountId, current.machine));
}

Answer AccountApi::revokeToken(const Request& request, std::string_view escapedToken) {
    const Session current = session(request);
    check_.nothingButAuthorization(request);
    const std::optional<std::string> token = percentDecoded(escapedToken);
    if (!token || !accounts_.closeSession(current.accountId, *token)) {
        return plainText(404, "No such access token");
    }
    Answer answer;
    answer.status = 204;
    return answer;
}

Answer AccountApi::devices(const Request& request) {
    const Session current = session(request);
    check_.parameters(request, Encoding::json).requireNoMore();
    Json list = Json::array();
    for (const Session& each : accounts_.sessionsOf(current.accountId)) {
        list.push_back(
            {{"id", std::to_string(each.id)},
             {"token", each.token},
             {"machine_name", each.machine.name.empty() ? Json(nullptr) : Json(each.machine.name)},
             {"machine_id", each.machine.id},
             {"created", dateText(each.created)},
             {"current", each.token == current.token},
             {"consumer", {{"id", 3}, {"name", each.machine.consumerName}, {"device_type", each.machine.deviceType}}}});
    }
    return json(200, list);
}

Answer AccountApi::currentAccount(const Request& request) {
    const Session current = session(request);
    Parameters parameters = check_.parameters(request, Encoding::query);
    parameters.requireValue("flags", "17");
    parameters.requireNoMore();
    return accountRecord(accountOf(current), 200);
}

Answer AccountApi::updateAccount(const Request& request) {
    const Session current = session(request);
    Parameters parameters = check_.parameters(request, Encoding::json);
    struct Field {
        const char* key;
        AccountField field;
    };
    constexpr std::array fields{Field{"new_username", AccountField::username},
                                Field{"new_password", AccountField::password}, Field{"new_email", AccountField::email}};
    std::optional<std::pair<AccountField, std::string>> change;
    for (const auto& [key, field] : fields) {
        std::optional<std::string> value = parameters.take(key);
        if (!value) {
            continue;
        }
        if (value->empty()) {
            refuseMalformed("parameter " + std::string(key) + " is empty");
        }
        if (change) {
            refuseMalformed("only one member can be changed at a time");
        }
        change.emplace(field, std::move(*value));
    }
    if (!change) {
        refuseMalformed("none of new_username, new_password and new_email is there");
    }
    const std::optional<std::string> oldPassword =
        change->first == AccountField::password ? parameters.take("old_password") : std::nullopt;
    parameters.requireNoMore();
    if (oldPassword && *oldPassword != accountOf(current).password) {
        return plainText(403, "Wrong password");
    }
    if (!accounts_.update(current.accountId, change->first, change->second)) {
        return plainText(409, "Username already exists");
    }
    return accountRecord(accountOf(current), 200);
}

Answer AccountApi::authenticationToken(const Request& request) {
    const Session current = session(request);
    check_.bareParameters(request).requireNoMore();
    Answer answer = plainText(200, "at-" + current.token);
    answer.headers.emplace_back("Cache-Control", "no-store");
    return answer;
}

Session AccountApi::session(const Request& request) const {
    std::optional<Session> found = check_.authorization(request, SessionRule::required);
    check_.fullRights(request);
    return std::move(found.value());
}

Account AccountApi::accountOf(const Session& session) const {
    std::optional<Account> account = accounts_.find(session.accountId);
    if (!account) {
        refuseSession(notLoggedIn);
    }
    return std::move(*account);
}

Answer AccountApi::accountRecord(const Account& account, unsigned status) const {
    return json(status, {{"id", account.id},
                         {"user_name", account.username},
                         {"user_email", account.email},
                         {"active", account.active ? 1 : 0},
                         {"location", locationRecord(caller_)},
                         {"vip", true},
                         {"subscription", {{"product", "premium"}, {"period", "12"}, {"recurring", 1}}},
                         {"avatar", nullptr}});
}

}  // namespace TarnwickService
