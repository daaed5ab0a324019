#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/AccountCalls.hpp>
#include <Tarnwick_API/Platform/Application/HostName.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include <Calls/DeliverCompletion.hpp>
#include <Platform/Http/Requests/RequestHeaders.hpp>
#include <Platform/Text/Utf8.hpp>
#include <Platform/Text/Wiping.hpp>

#include <iostream>
#include <utility>

#include "DecodeAnswer.hpp"

namespace Tarnwick_API {

namespace {

// Statuses without a name in `HttpStatus`, and what they mean to one operation each.
constexpr std::int64_t migrationRequired = 202;
constexpr std::int64_t nameTaken = 409;

constexpr const char* unnamedMachine = "Mac Desktop";

/// The error of a sign-in: the service's refusal texts arrive as generic errors.
std::optional<ApiError> loginErrorFrom(std::optional<ApiError> error) {
    if (const auto* response = error ? error->as<ResponseError>() : nullptr;
        response != nullptr && response->kind() == ResponseError::Kind::genericError) {
        if (const auto loginError = LoginError::from(response->responseText())) {
            return *loginError;
        }
    }
    return error;
}

}  // namespace

void ApiVersion1::login(const std::string& username, const std::string& password, bool qvImport,
                        Completion<void> onCompletion) {
    static constexpr Operation operation{"login(username:password:qvImport:onCompletion:)"};
    const LoginCallV1 call{apiBase(), qvImport};
    Platform::Parameters parameters{
        {"x_auth_machinename", Platform::HostName::localized().value_or(unnamedMachine)},
        {"x_auth_machineid", uuid_.uuidString()},
        {"x_auth_username", username},
        {"x_auth_password", password},
        {"x_auth_mode", "client_auth"},
    };
    if (auto callParameters = call.parameters()) {
        parameters.merge(*callParameters);
    }
    sendCall(call, parameters, Platform::ParameterEncoding::json, standardHeaders()->fields(),
             [self = shared_from_this(), onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body,
                                                                                 ApiResult result) {
                 if (result.status == migrationRequired) {
                     deliver(onCompletion, LoginError{LoginError::qvUserMigrationRequired});
                     return;
                 }
                 if (!body) {
                     deliver(onCompletion, loginErrorFrom(std::move(result.error)));
                     return;
                 }
                 auto token = decodedOrLogged<LoginCallV1::Answer>(operation, decodeSecretRecord<OAuthToken>, *body);
                 Platform::wipe(*body);
                 std::optional<ApiError> error;
                 if (token) {
                     self->setOauthToken(std::move(token));
                 } else {
                     error = LoginError{LoginError::noOauthToken};
                 }
                 if (self->oauthToken_) {
                     self->tokenKeeping_ = Keychain::keepPassword(self->keychainTokenService_, self->oauthToken_->token,
                                                                  self->oauthToken_->secret);
                 }
                 deliver(onCompletion, std::move(error));
             });
}

void ApiVersion1::logout(Completion<void> onCompletion) {
    std::cout << "logout v1" << std::endl;
    if (!oauthToken_) {
        deliver(onCompletion,
                Platform::DecodingError{Platform::DecodingError::Kind::dataCorrupted, {}, "Not logged in Error."});
        return;
    }
    const LogoutCallV1 call{apiBase(), oauthToken_->token};
    sendCall(call, {}, call.encoding(), authorization(),
             [self = shared_from_this(), onCompletion = std::move(onCompletion)](
                 const std::optional<Platform::Bytes>& /*body*/, ApiResult result) {
                 if (!result.error) {
                     self->setOauthToken(std::nullopt);
                     const auto placeholder = LoginData::signedOutPlaceholder();
                     self->tokenKeeping_ = Keychain::keepPassword(self->keychainTokenService_, placeholder.username,
                                                                  placeholder.password);
                 }
                 deliver(onCompletion, std::move(result.error));
             });
}

void ApiVersion1::createUser(const std::string& username, const std::string& password, Completion<void> onCompletion) {
    const auto machineId = uuid_.uuidString();
    const NewUserCallV1 call{apiBase(), username, password, Platform::HostName::localized().value_or(machineId),
                             machineId};
    dispatchCall(call, [onCompletion = std::move(onCompletion)](const std::optional<Platform::Bytes>& /*body*/,
                                                                ApiResult result) {
        if (result.status == nameTaken) {
            deliver(onCompletion, SignupError{SignupError::usernameAlreadyExists});
            return;
        }
        deliver(onCompletion, std::move(result.error));
    });
}

void ApiVersion1::setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) {
    setOauthToken(OAuthToken{token, secret});
    currentUser([self = shared_from_this(), onCompletion = std::move(onCompletion)](std::optional<User> user,
                                                                                    std::optional<ApiError> error) {
        if (error) {
            self->setOauthToken(std::nullopt);
            user = std::nullopt;
        }
        deliver(onCompletion, std::move(user), std::move(error));
    });
}

void ApiVersion1::currentUser(Completion<User> onCompletion) {
    static constexpr Operation operation{"currentUser(onCompletion:)"};
    dispatchCall(UserCallV1{apiBase()},
                 decodingCompletion<UserCallV1::Answer, operation, decodeRecord<User>>(std::move(onCompletion)));
}

void ApiVersion1::updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion) {
    const UpdateUserCallV1 call{apiBase(), field, newValue};
    dispatchCall(call, [onCompletion = std::move(onCompletion)](const std::optional<Platform::Bytes>& /*body*/,
                                                                ApiResult result) {
        deliver(onCompletion, std::move(result.error));
    });
}

void ApiVersion1::getAuthToken(Completion<std::string> onCompletion) {
    const AuthTokenCallV1 call{apiBase()};
    sendCall(call, call.parameters().value_or(Platform::Parameters{}), call.encoding(), authorization(),
             [onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body, ApiResult result) {
                 if (result.error) {
                     deliver(onCompletion, std::nullopt, std::move(result.error));
                 } else if (body && Platform::isValidUtf8(*body)) {
                     deliver(onCompletion, std::move(body), std::nullopt);
                 } else if (body) {
                     deliver(onCompletion, std::nullopt, std::nullopt);
                 }
             });
}

}  // namespace Tarnwick_API
