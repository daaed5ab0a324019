#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Calls/UserField.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>
#include <Tarnwick_API/Records/User.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// Reads the signed-in user.
class UserCallV1 final : public ApiCallV1 {
public:
    using Answer = User;
    UserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl);

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;
};

/// Creates an account.
class NewUserCallV1 final : public ApiCallV1 {
public:
    NewUserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::string email,
                  std::string password, std::string machineName, std::string machineId);

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    std::string email_;
    std::string password_;
    std::string machineName_;
    std::string machineId_;
};

/// Exchanges the user's credentials for an access token. The sign-in adds the credentials and sends it all as JSON.
class LoginCallV1 final : public ApiCallV1 {
public:
    using Answer = OAuthToken;
    LoginCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, bool qvImport);

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    bool qvImport_;
};

/// Ends the life of one access token.
class LogoutCallV1 final : public ApiCallV1 {
public:
    LogoutCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::string_view token);
};

/// Changes one part of the account.
class UpdateUserCallV1 final : public ApiCallV1 {
public:
    UpdateUserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, UserField field,
                     std::string newValue, std::optional<std::string> oldValue = std::nullopt);

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    UserField field_;
    std::string newValue_;
    std::optional<std::string> oldValue_;
};

/// Reads the user's authentication token, a plain text.
class AuthTokenCallV1 final : public ApiCallV1 {
public:
    AuthTokenCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl);
    using ApiCallV1::setEncoding;
    using ApiCallV1::setEnvironment;
};

/// Registers a device. No operation sends it; an application may, with `ApiCommunicateable::sendRequest`.
class AddDeviceCallV1 final : public ApiCallV1 {
public:
    AddDeviceCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl);
};

}  // namespace Tarnwick_API
