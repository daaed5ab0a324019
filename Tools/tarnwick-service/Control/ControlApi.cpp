#include "Control/ControlApi.hpp"

#include "Service.hpp"

#include <charconv>

#include <nlohmann/json.hpp>

namespace TarnwickService {
namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned badRequest = 400;

[[noreturn]] void refuse(const std::string& text) {
    throw Refusal(badRequest, text);
}

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

Json parse(std::string_view body) {
    try {
        return Json::parse(body);
    } catch (const Json::exception& error) {
        refuse(error.what());
    }
}

/// Takes the known members out of an object, so that a misspelt one does not go unnoticed.
class Members {
public:
    explicit Members(Json object) : object_(std::move(object)) {
        if (!object_.is_object()) {
            refuse("an object is expected");
        }
    }

    std::optional<Json> take(const char* name) {
        const auto found = object_.find(name);
        if (found == object_.end()) {
            return std::nullopt;
        }
        Json value = std::move(*found);
        object_.erase(found);
        return value;
    }

    std::optional<std::string> text(const char* name) {
        const auto value = take(name);
        if (value && !value->is_string()) {
            refuse(std::string(name) + ": a text is expected");
        }
        return value ? std::optional(value->get<std::string>()) : std::nullopt;
    }

    std::optional<std::uint64_t> number(const char* name, std::uint64_t largest) {
        const auto value = take(name);
        if (value && (!value->is_number_unsigned() || value->get<std::uint64_t>() > largest)) {
            refuse(std::string(name) + ": a number from 0 to " + std::to_string(largest) + " is expected");
        }
        return value ? std::optional(value->get<std::uint64_t>()) : std::nullopt;
    }

    bool flag(const char* name, bool standard) {
        const auto value = take(name);
        if (value && !value->is_boolean()) {
            refuse(std::string(name) + ": true or false is expected");
        }
        return value ? value->get<bool>() : standard;
    }

    void requireNoMore() const {
        if (!object_.empty()) {
            refuse("unknown member " + object_.begin().key());
        }
    }

private:
    Json object_;
};

std::string fromHexadecimal(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned char byte = 0;
        const char* const end = text.data() + i + 2;
        if (i + 2 > text.size() || std::from_chars(text.data() + i, end, byte, 16).ptr != end) {
            refuse("body_hex: pairs of hexadecimal digits are expected");
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string repeated(const std::string& text, std::size_t times) {
    constexpr std::size_t largestBody = std::size_t{256} << 20U;
    if (!text.empty() && times > largestBody / text.size()) {
        refuse("repeat: the body would be larger than " + std::to_string(largestBody) + " bytes");
    }
    std::string result;
    result.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

Cut cutFrom(const std::string& text) {
    if (text == "before_answer") {
        return Cut::beforeAnswer;
    }
    if (text == "inside_header") {
        return Cut::insideHeader;
    }
    if (text == "after_body_bytes") {
        return Cut::afterBodyBytes;
    }
    refuse("cut: before_answer, inside_header or after_body_bytes is expected");
}

std::vector<std::pair<std::string, std::string>> headersFrom(const Json& object) {
    std::vector<std::pair<std::string, std::string>> headers;
    if (!object.is_object()) {
        refuse("headers: an object of texts is expected");
    }
    for (const auto& [name, value] : object.items()) {
        if (!value.is_string()) {
            refuse("headers: an object of texts is expected");
        }
        headers.emplace_back(name, value.get<std::string>());
    }
    return headers;
}

Fault faultFrom(const Json& object) {
    constexpr std::uint64_t mostRequests = 1'000'000'000;
    constexpr std::uint64_t longestDelay = 3'600'000;
    constexpr std::uint64_t largestStatus = 999;
    constexpr std::uint64_t largestLength = std::uint64_t{1} << 62U;
    Members members(object);
    Fault fault;
    fault.count = members.number("count", mostRequests).value_or(fault.count);
    fault.path = members.text("path").value_or("");
    fault.method = members.text("method").value_or("");
    fault.delay = std::chrono::milliseconds(members.number("delay_ms", longestDelay).value_or(0));
    if (const auto status = members.number("status", largestStatus)) {
        constexpr std::uint64_t firstFinalStatus = 200;
        if (*status < firstFinalStatus) {
            refuse("status: a final one, from 200 on, is expected");
        }
        fault.status = static_cast<unsigned>(*status);
    }
    fault.body = members.text("body");
    if (const auto hexadecimal = members.text("body_hex")) {
        fault.body = fromHexadecimal(*hexadecimal);
    }
    if (const auto times = members.number("repeat", mostRequests); times && fault.body) {
        fault.body = repeated(*fault.body, *times);
    }
    fault.contentType = members.text("content_type").value_or(fault.contentType);
    if (const auto headers = members.take("headers")) {
        fault.headers = headersFrom(*headers);
    }
    if (const auto cut = members.text("cut")) {
        fault.cut = cutFrom(*cut);
    }
    fault.cutAfterBytes = members.number("cut_after_bytes", largestLength).value_or(0);
    fault.contentLength = members.number("content_length", largestLength);
    fault.takesEffect = members.flag("takes_effect", false);
    members.requireNoMore();
    return fault;
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
    Members members(parse(body));
    Account account;
    account.username = members.text("username").value_or("");
    account.password = members.text("password").value_or("");
    account.email = members.text("email").value_or(account.username);
    account.active = members.flag("active", account.active);
    account.migrationRequired = members.flag("migration_required", account.migrationRequired);
    const Json devices = members.take("devices").value_or(Json::array());
    members.requireNoMore();
    if (account.username.empty() || account.password.empty()) {
        refuse("an account needs a username and a password");
    }
    if (!devices.is_array()) {
        refuse("devices: a list is expected");
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
    const Json value = parse(body);
    std::vector<Fault> faults;
    if (value.is_array()) {
        for (const Json& each : value) {
            faults.push_back(faultFrom(each));
        }
    } else {
        faults.push_back(faultFrom(value));
    }
    for (Fault& fault : faults) {
        service_.faults().add(std::move(fault));
    }
    return noContent();
}

}  // namespace TarnwickService
