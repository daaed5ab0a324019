#include "Failures/Failure.hpp"

#include <Tarnwick_API/Storage/Keychain.hpp>

#include <optional>
#include <string>
#include <type_traits>
#include <variant>

namespace TarnwickClient {

using Tarnwick_API::ApiError;
using Tarnwick_API::CancellationError;
using Tarnwick_API::LoginError;
using Tarnwick_API::ResponseError;
using Tarnwick_API::SessionError;
using Tarnwick_API::SignupError;
using Tarnwick_API::Platform::KeychainStatus;

namespace {

struct Classification {
    ExitStatus status;
    const char* kind;
};

Classification classify(ResponseError::Kind kind) {
    switch (kind) {
        case ResponseError::Kind::genericError:
            return {ExitStatus::refused, "genericError"};
        case ResponseError::Kind::unknownError:
            return {ExitStatus::refused, "unknownError"};
        case ResponseError::Kind::badRequest:
            return {ExitStatus::refused, "badRequest"};
        case ResponseError::Kind::unauthorized:
            return {ExitStatus::notSignedIn, "unauthorized"};
        case ResponseError::Kind::forbidden:
            return {ExitStatus::refused, "forbidden"};
        case ResponseError::Kind::notFound:
            return {ExitStatus::refused, "notFound"};
        case ResponseError::Kind::notReachable:
            return {ExitStatus::notReachable, "notReachable"};
    }
    return {ExitStatus::refused, "unknownError"};
}

Classification classify(LoginError error) {
    switch (error.value()) {
        case LoginError::loginRequired:
            return {ExitStatus::notSignedIn, "loginRequired"};
        case LoginError::invalidConsumerRights:
            return {ExitStatus::refused, "invalidConsumerRights"};
        case LoginError::invalidConsumerKey:
            return {ExitStatus::refused, "invalidConsumerKey"};
        case LoginError::consumerKeyMissing:
            return {ExitStatus::refused, "consumerKeyMissing"};
        case LoginError::noOauthToken:
            return {ExitStatus::noAnswer, "noOauthToken"};
        case LoginError::qvUserMigrationRequired:
            return {ExitStatus::refused, "qvUserMigrationRequired"};
    }
    return {ExitStatus::refused, "unknownError"};
}

/// What the user can do about it.
const char* hint(const std::string& kind) {
    if (kind == "qvUserMigrationRequired") {
        return " Sign in with --import to take the account over.";
    }
    if (kind == "invalidConsumerKey" || kind == "consumerKeyMissing") {
        return " Check the settings consumer-key and consumer-secret.";
    }
    return "";
}

Failure make(Classification classification, std::string message, std::string serviceText) {
    message += hint(classification.kind);
    return {classification.status, classification.kind, message, std::move(serviceText)};
}

}  // namespace

Failure Failure::from(const ApiError& error, std::string_view transportError) {
    const std::string description{error.localizedDescription()};
    if (const auto* response = error.as<ResponseError>()) {
        // The refusal texts about sessions and keys arrive as generic errors outside a sign-in.
        if (const auto loginError = LoginError::from(response->responseText())) {
            return make(classify(*loginError), std::string{loginError->localizedDescription()},
                        response->responseText());
        }
        const auto isUnreachable = response->kind() == ResponseError::Kind::notReachable;
        const auto cause = isUnreachable && !transportError.empty() ? " (" + std::string{transportError} + ")" : "";
        return make(classify(response->kind()), description + cause, response->responseText());
    }
    if (const auto* login = error.as<LoginError>()) {
        return make(classify(*login), description, std::string{login->responseText()});
    }
    if (const auto* signup = error.as<SignupError>()) {
        const auto isTaken = *signup == SignupError::usernameAlreadyExists;
        return make({ExitStatus::refused, isTaken ? "usernameAlreadyExists" : "signupFailed"}, description, {});
    }
    if (error.as<CancellationError>() != nullptr) {
        return make({ExitStatus::noAnswer, "cancelled"}, description, {});
    }
    if (const auto* session = error.as<SessionError>()) {
        const auto isNobody = *session == SessionError::nobodySignedIn;
        return isNobody ? notSignedIn() : make({ExitStatus::local, "keychainUnavailable"}, description, {});
    }
    return make({ExitStatus::noAnswer, "decodingError"}, description, {});
}

Failure Failure::keychain(KeychainStatus status) {
    if (status == KeychainStatus::interactionNotAllowed) {
        return {ExitStatus::local, "keychainLocked",
                "The keychain is locked. Unlock it with: tarnwick keychain unlock"};
    }
    return {
        ExitStatus::local, "keychainUnavailable",
        "The keychain can't be used: " + Tarnwick_API::Keychain::store()->message(status).value_or("no reason given")};
}

Failure Failure::unlocking(KeychainStatus status) {
    switch (status) {
        case KeychainStatus::userCanceled:
            return {ExitStatus::local, "keychainLocked", "The keychain stays locked: its prompt was dismissed."};
        case KeychainStatus::interactionNotAllowed:
            return {ExitStatus::local, "keychainLocked",
                    "The keychain stays locked: there is no place to show its prompt."};
        default:
            return keychain(status);
    }
}

bool isSessionEnded(const ApiError& error) {
    return Failure::from(error, {}).status() == ExitStatus::notSignedIn;
}

}  // namespace TarnwickClient
