#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Calls/UserField.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>
#include <Tarnwick_API/Records/User.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Tarnwick_API {

/// Reads the signed-in user.
class TARNWICK_API_EXPORT UserCallV1 final : public ApiCallV1 {
public:
    using Answer = User;
    explicit UserCallV1(ApiBase base);
    UserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
        : UserCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}} {}

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;
};

/// Creates an account. The password's memory is overwritten when the call goes.
class TARNWICK_API_EXPORT NewUserCallV1 final : public ApiCallV1 {
public:
    NewUserCallV1(ApiBase base, std::string email, std::string password, std::string machineName,
                  std::string machineId);
    NewUserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::string email,
                  std::string password, std::string machineName, std::string machineId)
        : NewUserCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, std::move(email), std::move(password),
                        std::move(machineName), std::move(machineId)} {}

    ~NewUserCallV1() override;

    /// Serves as the user name too.
    [[nodiscard]] const std::string& email() const noexcept { return email_; }
    [[nodiscard]] const std::string& password() const noexcept { return password_; }
    [[nodiscard]] const std::string& machineName() const noexcept { return machineName_; }
    [[nodiscard]] const std::string& machineId() const noexcept { return machineId_; }

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    std::string email_;
    std::string password_;
    std::string machineName_;
    std::string machineId_;
};

/// Exchanges the user's credentials for an access token. The sign-in adds the credentials and sends it all as JSON.
class TARNWICK_API_EXPORT LoginCallV1 final : public ApiCallV1 {
public:
    using Answer = OAuthToken;
    LoginCallV1(ApiBase base, bool qvImport);
    LoginCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, bool qvImport)
        : LoginCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, qvImport} {}

    /// Whether the service shall take over an account of the legacy system.
    [[nodiscard]] bool qvImport() const noexcept { return qvImport_; }

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    bool qvImport_;
};

/// Ends the life of one access token, which is part of the path.
class TARNWICK_API_EXPORT LogoutCallV1 final : public ApiCallV1 {
public:
    LogoutCallV1(ApiBase base, std::string_view token);
    LogoutCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::string_view token)
        : LogoutCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, token} {}
};

/// Changes one part of the account. The values' memory is overwritten when the call goes, as one may be a password.
class TARNWICK_API_EXPORT UpdateUserCallV1 final : public ApiCallV1 {
public:
    UpdateUserCallV1(ApiBase base, UserField field, std::string newValue,
                     std::optional<std::string> oldValue = std::nullopt);
    UpdateUserCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, UserField field,
                     std::string newValue, std::optional<std::string> oldValue = std::nullopt)
        : UpdateUserCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, field, std::move(newValue),
                           std::move(oldValue)} {}

    ~UpdateUserCallV1() override;

    [[nodiscard]] UserField field() const noexcept { return field_; }
    [[nodiscard]] const std::string& newValue() const noexcept { return newValue_; }
    /// Sent for a password alone.
    [[nodiscard]] const std::optional<std::string>& oldValue() const noexcept { return oldValue_; }

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    UserField field_;
    std::string newValue_;
    std::optional<std::string> oldValue_;
};

/// Reads the user's authentication token, a plain text.
class TARNWICK_API_EXPORT AuthTokenCallV1 final : public ApiCallV1 {
public:
    explicit AuthTokenCallV1(ApiBase base);
    AuthTokenCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
        : AuthTokenCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}} {}
    using ApiCallV1::setEncoding;
    using ApiCallV1::setEnvironment;
};

/// Registers a device. No operation sends it; an application may, with `ApiVersion1::dispatchCall`.
class TARNWICK_API_EXPORT AddDeviceCallV1 final : public ApiCallV1 {
public:
    explicit AddDeviceCallV1(ApiBase base);
    AddDeviceCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl)
        : AddDeviceCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}} {}
};

}  // namespace Tarnwick_API
