#include <Tarnwick_API/Calls/AccountCalls.hpp>

#include <utility>

namespace Tarnwick_API {

using Platform::HttpMethod;
using Platform::ParameterEncoding;

UserCallV1::UserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
    : ApiCallV1{HttpMethod::get,        "users/me",         std::nullopt, environment,
                ParameterEncoding::url, std::move(baseUrl), partnersId} {
}

Platform::Parameters UserCallV1::ownParameters() const {
    return {{"flags", "17"}};
}

NewUserCallV1::NewUserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl,
                             std::string email, std::string password, std::string machineName, std::string machineId)
    : ApiCallV1{HttpMethod::post,   "users",   std::nullopt, environment, ParameterEncoding::json,
                std::move(baseUrl), partnersId},
      email_{std::move(email)},
      password_{std::move(password)},
      machineName_{std::move(machineName)},
      machineId_{std::move(machineId)} {
}

Platform::Parameters NewUserCallV1::ownParameters() const {
    return {
        {"username", email_},
        {"password", password_},
        {"useremail", email_},
        {"source", "mac"},
        {"hid", machineId_},
        {"x_auth_machinename", machineName_},
        {"x_auth_machineid", machineId_},
    };
}

LoginCallV1::LoginCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, bool qvImport)
    : ApiCallV1{HttpMethod::post,       "oauth/access_token", std::nullopt, environment,
                ParameterEncoding::url, std::move(baseUrl),   partnersId},
      qvImport_{qvImport} {
}

Platform::Parameters LoginCallV1::ownParameters() const {
    return qvImport_ ? Platform::Parameters{{"import", "1"}} : Platform::Parameters{};
}

LogoutCallV1::LogoutCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl,
                           std::string_view token)
    : ApiCallV1{HttpMethod::delete_,
                "users/me/access_tokens/" + std::string{token},
                std::nullopt,
                environment,
                ParameterEncoding::url,
                std::move(baseUrl),
                partnersId} {
}

UpdateUserCallV1::UpdateUserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl,
                                   UserField field, std::string newValue, std::optional<std::string> oldValue)
    : ApiCallV1{HttpMethod::put,         "users/me",         std::nullopt, environment,
                ParameterEncoding::json, std::move(baseUrl), partnersId},
      field_{field},
      newValue_{std::move(newValue)},
      oldValue_{std::move(oldValue)} {
}

Platform::Parameters UpdateUserCallV1::ownParameters() const {
    Platform::Parameters parameters{{std::string{updateParameter(field_)}, newValue_}};
    if (const auto oldName = oldParameter(field_); oldName && oldValue_) {
        parameters.emplace(*oldName, *oldValue_);
    }
    return parameters;
}

AuthTokenCallV1::AuthTokenCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
    : ApiCallV1{HttpMethod::get,        "users/me/authtoken", std::nullopt, environment,
                ParameterEncoding::url, std::move(baseUrl),   partnersId} {
}

AddDeviceCallV1::AddDeviceCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
    : ApiCallV1{HttpMethod::post,       "oauth/access_token", std::nullopt, environment,
                ParameterEncoding::url, std::move(baseUrl),   partnersId} {
}

}  // namespace Tarnwick_API
