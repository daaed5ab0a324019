#include "Control/ControlApi.hpp"

#include "Control/ControlJson.hpp"
#include "Control/FaultJson.hpp"
#include "Service.hpp"

#include <utility>

namespace TarnwickService {
namespace {

Answer json(unsigned status, const Json& value) {
    Answer answer;
    answer.status = status;
    // Recorded bodies are what clients sent, which need not be UTF-8.
    answer.body = value.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
    return answer;
}

Answer noContent() {
    Answer answer;
    answer.status = 204;
    return answer;
}

}  // namespace

Answer ControlApi::answer(const Request& request) const {
    const std::string_view path = request.path();
    const auto is = [&](std::string_view method, std::string_view expected) {
        return request.method == method && path == expected;
    };
    if (is("GET", "/state")) {
        return state();
    }
    if (is("GET", "/requests")) {
        return requests();
    }
    if (is("POST", "/accounts")) {
        return createAccount(request.body);
    }
    if (is("POST", "/faults")) {
        return addFaults(request.body);
    }
    if (is("DELETE", "/faults")) {
        service_.faults().clear();
        return noContent();
    }
    if (is("POST", "/reset")) {
        service_.reset();
        return noContent();
    }
    return plainText(404, "GET /state, GET /requests, POST /accounts, POST /faults, DELETE /faults, POST /reset\n");
}

Answer ControlApi::state() const {
    const Counters counters = service_.counters();
    Json accounts = Json::array();
    for (const Account& account : service_.accounts().all()) {
        accounts.push_back({{"id", account.id},
                            {"username", account.username},
                            {"email", account.email},
                            {"active", account.active},
                            {"migration_required", account.migrationRequired}});
    }
    Json tokens = Json::array();
    for (const Session& session : service_.accounts().allSessions()) {
        tokens.push_back({{"id", session.id},
                          {"account_id", session.accountId},
                          {"token", session.token},
                          {"secret", session.secret},
                          {"machine_name", session.machine.name},
                          {"machine_id", session.machine.id},
                          {"device_type", session.machine.deviceType}});
    }
    return json(200, {{"api_host", service_.apiHost()},
                      {"port", service_.port()},
                      {"counters",
                       {{"connections", counters.connections},
                        {"requests", counters.requests},
                        {"refusals", counters.refusals},
                        {"last_refusal", counters.lastRefusal},
                        {"requests_by_path", counters.requestsByPath}}},
                      {"accounts", accounts},
                      {"tokens", tokens},
                      {"pending_faults", service_.faults().pending().size()}});
}

Answer ControlApi::requests() const {
    Json list = Json::array();
    for (const RecordedRequest& request : service_.recordedRequests()) {
        Json headers = Json::array();
        for (const auto& [name, value] : request.headers) {
            headers.push_back({{"name", name}, {"value", value}});
        }
        list.push_back(
            {{"method", request.method}, {"target", request.target}, {"headers", headers}, {"body", request.body}});
    }
    return json(200, list);
}

Answer ControlApi::createAccount(std::string_view body) const {
    Members members(parseOrder(body));
    Account account;
    account.username = members.text("username").value_or("");
    account.password = members.text("password").value_or("");
    account.email = members.text("email").value_or(account.username);
    account.active = members.flag("active", account.active);
    account.migrationRequired = members.flag("migration_required", account.migrationRequired);
    const Json devices = members.take("devices").value_or(Json::array());
    members.requireNoMore();
    if (account.username.empty() || account.password.empty()) {
        refuseOrder("an account needs a username and a password");
    }
    if (!devices.is_array()) {
        refuseOrder("devices: a list is expected");
    }
    std::vector<Machine> machines;
    for (const Json& device : devices) {
        Members deviceMembers(device);
        Machine machine;
        machine.name = deviceMembers.text("name").value_or("");
        machine.deviceType = deviceMembers.text("type").value_or(machine.deviceType);
        machine.consumerName = "Tarnwick for " + machine.deviceType;
        deviceMembers.requireNoMore();
        machines.push_back(std::move(machine));
    }
    const std::optional<Account> created = service_.accounts().create(account);
    if (!created) {
        throw Refusal(409, "the username is taken");
    }
    for (Machine& machine : machines) {
        service_.accounts().openSession(created->id, std::move(machine));
    }
    return json(201, {{"id", created->id}, {"username", created->username}});
}

Answer ControlApi::addFaults(std::string_view body) const {
    for (Fault& fault : readFaults(body)) {
        service_.faults().add(std::move(fault));
    }
    return noContent();
}

}  // namespace TarnwickService
