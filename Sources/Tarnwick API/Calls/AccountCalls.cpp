#include <Tarnwick_API/Calls/AccountCalls.hpp>

#include <Platform/Text/Wiping.hpp>

#include <utility>

namespace Tarnwick_API {

using Platform::HttpMethod;
using Platform::ParameterEncoding;

UserCallV1::UserCallV1(ApiBase base)
    : ApiCallV1{{HttpMethod::get, "users/me", ParameterEncoding::url}, std::move(base)} {
}

Platform::Parameters UserCallV1::ownParameters() const {
    return {{"flags", "17"}};
}

NewUserCallV1::NewUserCallV1(ApiBase base, std::string email, std::string password, std::string machineName,
                             std::string machineId)
    : ApiCallV1{{HttpMethod::post, "users", ParameterEncoding::json}, std::move(base)},
      email_{std::move(email)},
      password_{std::move(password)},
      machineName_{std::move(machineName)},
      machineId_{std::move(machineId)} {
}

NewUserCallV1::~NewUserCallV1() {
    Platform::wipe(password_);
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

LoginCallV1::LoginCallV1(ApiBase base, bool qvImport)
    : ApiCallV1{{HttpMethod::post, "oauth/access_token", ParameterEncoding::url}, std::move(base)},
      qvImport_{qvImport} {
}

Platform::Parameters LoginCallV1::ownParameters() const {
    return qvImport_ ? Platform::Parameters{{"import", "1"}} : Platform::Parameters{};
}

LogoutCallV1::LogoutCallV1(ApiBase base, std::string_view token)
    : ApiCallV1{{HttpMethod::delete_, std::string{"users/me/access_tokens/"}.append(token), ParameterEncoding::url},
                std::move(base)} {
}

UpdateUserCallV1::UpdateUserCallV1(ApiBase base, UserField field, std::string newValue,
                                   std::optional<std::string> oldValue)
    : ApiCallV1{{HttpMethod::put, "users/me", ParameterEncoding::json}, std::move(base)},
      field_{field},
      newValue_{std::move(newValue)},
      oldValue_{std::move(oldValue)} {
}

UpdateUserCallV1::~UpdateUserCallV1() {
    Platform::wipe(newValue_);
    if (oldValue_) {
        Platform::wipe(*oldValue_);
    }
}

Platform::Parameters UpdateUserCallV1::ownParameters() const {
    Platform::Parameters parameters{{std::string{updateParameter(field_)}, newValue_}};
    if (const auto oldName = oldParameter(field_); oldName && oldValue_) {
        parameters.emplace(*oldName, *oldValue_);
    }
    return parameters;
}

AuthTokenCallV1::AuthTokenCallV1(ApiBase base)
    : ApiCallV1{{HttpMethod::get, "users/me/authtoken", ParameterEncoding::url}, std::move(base)} {
}

AddDeviceCallV1::AddDeviceCallV1(ApiBase base)
    : ApiCallV1{{HttpMethod::post, "oauth/access_token", ParameterEncoding::url}, std::move(base)} {
}

}  // namespace Tarnwick_API
