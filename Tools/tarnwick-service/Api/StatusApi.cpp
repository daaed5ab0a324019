#include "Api/StatusApi.hpp"

#include <nlohmann/json.hpp>

namespace TarnwickService {

StatusApi::StatusApi(const RequestCheck& check, const Caller& caller, const Configuration& configuration)
    : check_(check) {
    const nlohmann::ordered_json record = {
        {"realip", caller.address},
        {"required_client_versions",
         {{"mac_7", configuration.minimumClientVersion}, {"win_7", "7.2.0"}, {"ios_3", "3.0b"}}},
        {"status_update_interval", std::to_string(configuration.statusUpdateInterval.count())},
        {"phpapi", "1.27.4"},
        {"location", locationRecord(caller)},
        {"messages", nlohmann::ordered_json::array()},
        {"maintenance", false}};
    record_ = std::make_shared<const std::string>(record.dump());
}

Answer StatusApi::status(const Request& request) const {
    check_.authorization(request, SessionRule::ignored);
    check_.parameters(request, Encoding::query).requireNoMore();
    Answer answer;
    answer.headers.emplace_back("Cache-Control", "no-store");
    answer.sharedBody = record_;
    return answer;
}

}  // namespace TarnwickService
