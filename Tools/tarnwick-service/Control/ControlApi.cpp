#include "Control/ControlApi.hpp"

#include "Api/Router.hpp"
#include "Control/ControlJson.hpp"
#include "Control/FaultJson.hpp"
#include "Service.hpp"

#include <utility>

namespace TarnwickService {
namespace {

Answer report(unsigned status, const Json& value) {
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

std::span<const ControlApi::Order> ControlApi::orders() {
    using std::string_view;
    static constexpr Order all[] = {
        {"GET", "/state", false, "hosts, ports, counters, accounts, tokens and how many faults are left",
         [](const ControlApi& api, string_view) { return api.state(); }},
        {"GET", "/requests", false, "the recorded requests",
         [](const ControlApi& api, string_view) { return api.requests(); }},
        {"POST", "/accounts", true, "creates an account",
         [](const ControlApi& api, string_view body) { return api.createAccount(body); }},
        {"GET", "/faults", false, "the faults that are left, and all that can be ordered",
         [](const ControlApi& api, string_view) { return api.faults(); }},
        {"POST", "/faults", true, "orders a fault, or a list of them",
         [](const ControlApi& api, string_view body) { return api.addFaults(body); }},
        {"DELETE", "/faults", false, "forgets the faults that are left",
         [](const ControlApi& api, string_view) {
             api.service_.faults().clear();
             return noContent();
         }},
        {"POST", "/reset", false, "forgets accounts, tokens, faults, recorded requests and counters",
         [](const ControlApi& api, string_view) {
             api.service_.reset();
             return noContent();
         }},
    };
    return all;
}

Answer ControlApi::answer(const Request& request) const {
    std::string known;
    for (const Order& order : orders()) {
        if (request.method != order.method || request.path() != order.path) {
            known.append(known.empty() ? "" : ", ").append(order.method).append(" ").append(order.path);
            continue;
        }
        if (request.query()) {
            refuseOrder("no query belongs to this order");
        }
        if (!order.hasBody && !request.body.empty()) {
            refuseOrder("no body belongs to this order");
        }
        return order.serve(*this, request.body);
    }
    return plainText(404, known + '\n');
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
    return report(200, {{"api_host", service_.apiHost()},
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
    return report(200, list);
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
    return report(201, {{"id", created->id}, {"username", created->username}});
}

Answer ControlApi::faults() const {
    Json pending = Json::array();
    for (const Fault& fault : service_.faults().pending()) {
        pending.push_back({{"path", fault.path}, {"method", fault.method}, {"count", fault.count}});
    }
    Json kinds = Json::array();
    for (const FaultKind& kind : faultKinds()) {
        kinds.push_back({{"name", kind.name}, {"value", kind.value}, {"effect", kind.effect}});
    }
    Json requests = Json::array();
    for (const Router::Operation& operation : Router::operations()) {
        requests.push_back({{"method", operation.method}, {"path", operation.pattern()}});
    }
    return report(200, {{"pending", pending}, {"kinds", kinds}, {"requests", requests}});
}

Answer ControlApi::addFaults(std::string_view body) const {
    for (Fault& fault : readFaults(body)) {
        service_.faults().add(std::move(fault));
    }
    return noContent();
}

}  // namespace TarnwickService
