#include <Platform/Keychain/SecretService/SecretServiceError.hpp>

#include <libsecret/secret.h>

namespace Tarnwick_API::Platform {

namespace {

KeychainStatus statusOf(const GError& error) {
    if (error.domain == SECRET_ERROR) {
        switch (error.code) {
            case SECRET_ERROR_IS_LOCKED:
                return KeychainStatus::interactionNotAllowed;
            case SECRET_ERROR_NO_SUCH_OBJECT:
                return KeychainStatus::itemNotFound;
            default:
                return KeychainStatus::io;
        }
    }
    if (error.domain == G_DBUS_ERROR) {
        switch (error.code) {
            case G_DBUS_ERROR_UNKNOWN_OBJECT:
            case G_DBUS_ERROR_UNKNOWN_METHOD:  // how some services speak of an object that has gone
                return KeychainStatus::itemNotFound;
            case G_DBUS_ERROR_FAILED:
            case G_DBUS_ERROR_IO_ERROR:
            case G_DBUS_ERROR_INVALID_ARGS:
                return KeychainStatus::io;
            case G_DBUS_ERROR_NO_MEMORY:
            case G_DBUS_ERROR_LIMITS_EXCEEDED:
                return KeychainStatus::param;
            default:  // nobody there, nobody answers, nobody may ask
                return KeychainStatus::notAvailable;
        }
    }
    // What is no known error of D-Bus comes from the Secret Service; what is none of D-Bus at all, from the way there.
    return g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_DBUS_ERROR) != FALSE ? KeychainStatus::io
                                                                               : KeychainStatus::notAvailable;
}

}  // namespace

SecretServiceError SecretServiceError::ofItem(const GError* error, const char* action) {
    if (error == nullptr) {
        return {KeychainStatus::io, std::string{action}.append(" failed")};
    }
    return {statusOf(*error), std::string{action}
                                  .append(" failed: ")
                                  .append(g_quark_to_string(error->domain))
                                  .append(" ")
                                  .append(std::to_string(error->code))};
}

SecretServiceError SecretServiceError::from(const GError* error, const char* action) {
    auto failure = ofItem(error, action);
    if (failure.status_ == KeychainStatus::itemNotFound) {
        failure.status_ = KeychainStatus::notAvailable;
    }
    return failure;
}

}  // namespace Tarnwick_API::Platform
