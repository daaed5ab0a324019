#include <Platform/Keychain/SecretService/SecretServiceConnection.hpp>

#include <Platform/Keychain/SecretService/SecretServiceTypes.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";

bool is(const GError* error, GQuark domain, int code) {
    return g_error_matches(error, domain, code) != FALSE;
}

/// Whether an attempt to connect failed because there is nothing to connect to.
bool meansNoBus(const GError* error) {
    static constexpr std::array codes{
        G_IO_ERROR_NOT_FOUND,          G_IO_ERROR_NOT_DIRECTORY,    G_IO_ERROR_FILENAME_TOO_LONG,
        G_IO_ERROR_CONNECTION_REFUSED, G_IO_ERROR_INVALID_ARGUMENT, G_IO_ERROR_PERMISSION_DENIED,
        G_IO_ERROR_NOT_SUPPORTED,      G_IO_ERROR_HOST_UNREACHABLE, G_IO_ERROR_NETWORK_UNREACHABLE};
    return error->domain == G_RESOLVER_ERROR ||
           std::any_of(codes.begin(), codes.end(), [&](int code) { return is(error, G_IO_ERROR, code); });
}

/// Whether the environment names a bus, or there is one in the place where a session has it. "autolaunch:" names none:
/// asked to connect there, GLib would start a bus of its own.
bool isBusNamed() {
    const auto* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr) {
        return std::string_view{address}.find("autolaunch:") == std::string_view::npos;
    }
    return g_file_test(GLibOwner<char>{g_build_filename(g_get_user_runtime_dir(), "bus", nullptr)}.get(),
                       G_FILE_TEST_EXISTS) != FALSE;
}

/// Whether the process at the other end is one of this user. Of what is no local socket nobody can tell.
bool isOfThisUser(GIOStream* stream) {
    if (!G_IS_SOCKET_CONNECTION(stream)) {
        return false;
    }
    const GLibOwner<GCredentials> credentials{
        g_socket_get_credentials(g_socket_connection_get_socket(G_SOCKET_CONNECTION(stream)), nullptr)};
    return credentials && g_credentials_get_unix_user(credentials.get(), nullptr) == ::geteuid();
}

/// Whether an attempt to start the Secret Service failed for good.
bool meansNoService(const GError* error) {
    if (is(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)) {
        return true;
    }
    const GLibOwner<char> name{g_dbus_error_get_remote_error(error)};
    return name && std::string_view{name.get()}.starts_with("org.freedesktop.DBus.Error.Spawn.");
}

std::string textOf(GVariant* answer) {
    const char* text = "";
    g_variant_get(answer, "(&s)", &text);
    return text;
}

}  // namespace

void SecretServiceConnection::drop() {
    service_.reset();
    bus_.reset();
}

GLibOwner<GVariant> SecretServiceConnection::call(const char* destination, const char* path, const char* interface,
                                                  const char* method, GVariant* arguments, GLibOwner<GError>& error) {
    const GLibOwner<GVariant> owned{g_variant_ref_sink(arguments)};
    token_->throwIfGivenUp();
    return GLibOwner<GVariant>{g_dbus_connection_call_sync(bus_.get(), destination, path, interface, method,
                                                           owned.get(), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                                                           token_->cancellable(), GLibOutput{error})};
}

void SecretServiceConnection::connect() {
    const auto noBus = [](const char* reason) {
        return SecretServiceError{KeychainStatus::notAvailable, reason, SecretServiceError::Missing::bus};
    };
    token_->throwIfGivenUp();
    GLibOwner<GError> error;
    const GLibOwner<char> address{
        isBusNamed() ? g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, token_->cancellable(), GLibOutput{error})
                     : nullptr};
    if (!address) {
        throw noBus("no session bus");
    }
    const GLibOwner<GIOStream> stream{
        g_dbus_address_get_stream_sync(address.get(), nullptr, token_->cancellable(), GLibOutput{error})};
    // Before a word is said: another user's bus, which root may use too, leads to another user's keyring.
    if (stream && !isOfThisUser(stream.get())) {
        throw noBus("no session bus of this user");
    }
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    if (stream) {
        bus_.reset(g_dbus_connection_new_sync(stream.get(), nullptr, flags, nullptr, token_->cancellable(),
                                              GLibOutput{error}));
    }
    if (!bus_) {
        if (meansNoBus(error.get())) {
            throw noBus("no session bus");
        }
        throw SecretServiceError{KeychainStatus::notAvailable, "the session bus fails"};
    }
}

std::string SecretServiceConnection::owner() {
    const auto ask = [this](GLibOwner<GError>& error) {
        return call(busName, busPath, busName, "GetNameOwner", g_variant_new("(s)", serviceName), error);
    };
    const auto hasNoOwner = [](const GLibOwner<GError>& error) {
        return is(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER);
    };
    GLibOwner<GError> error;
    GLibOwner<GVariant> answer;
    if (bus_ && g_dbus_connection_is_closed(bus_.get()) == FALSE) {
        answer = ask(error);
    }
    if (!answer && !hasNoOwner(error)) {
        drop();
        connect();
        answer = ask(error);
    }
    if (!answer && hasNoOwner(error)) {
        if (!call(busName, busPath, busName, "StartServiceByName", g_variant_new("(su)", serviceName, 0U), error)) {
            if (meansNoService(error.get())) {
                throw SecretServiceError{KeychainStatus::notAvailable, "no Secret Service on the session bus",
                                         SecretServiceError::Missing::service};
            }
            throw SecretServiceError::from(error.get(), "starting the Secret Service");
        }
        answer = ask(error);
    }
    if (!answer) {
        throw SecretServiceError{KeychainStatus::notAvailable, "the session bus fails"};
    }
    return textOf(answer.get());
}

SecretService* SecretServiceConnection::service() {
    auto name = owner();
    if (service_ && name == serviceOwner_) {
        return service_.get();
    }
    token_->throwIfGivenUp();
    GLibOwner<GError> error;
    // The unique name: a Secret Service that is started anew in the middle of a call shall not get the rest of it.
    service_.reset(static_cast<SecretService*>(g_initable_new(
        prompts_ == Prompts::shown ? promptingSecretServiceType() : silentSecretServiceType(), token_->cancellable(),
        GLibOutput{error}, "g-connection", bus_.get(), "g-name", name.c_str(), "g-object-path", servicePath,
        "g-interface-name", "org.freedesktop.Secret.Service", "g-flags", G_DBUS_PROXY_FLAGS_NONE, nullptr)));
    if (!service_) {
        throw SecretServiceError::from(error.get(), "reaching the Secret Service");
    }
    // Without the property, libsecret 0.20 reads a null pointer when a collection is announced.
    if (!GLibOwner<GVariant>{g_dbus_proxy_get_cached_property(G_DBUS_PROXY(service_.get()), "Collections")}) {
        service_.reset();
        throw SecretServiceError{KeychainStatus::notAvailable, "the Secret Service tells no collections"};
    }
    serviceOwner_ = std::move(name);
    return service_.get();
}

GLibOwner<SecretCollection> SecretServiceConnection::defaultCollection() {
    auto* const secretService = service();
    token_->throwIfGivenUp();
    GLibOwner<GError> error;
    GLibOwner<SecretCollection> collection{secret_collection_for_alias_sync(
        secretService, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, token_->cancellable(), GLibOutput{error})};
    if (!collection && error) {
        throw SecretServiceError::from(error.get(), "looking for the default collection");
    }
    if (!collection) {
        throw SecretServiceError{KeychainStatus::notAvailable, "the Secret Service has no default collection",
                                 SecretServiceError::Missing::collection};
    }
    return collection;
}

bool SecretServiceConnection::isLocked(SecretCollection* collection) {
    GLibOwner<GError> error;
    // The proxy's own answer may be older than the lock.
    const auto answer = call(serviceOwner_.c_str(), g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection)),
                             "org.freedesktop.DBus.Properties", "Get",
                             g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"), error);
    if (!answer) {
        throw SecretServiceError::from(error.get(), "asking for the lock");
    }
    GLibOwner<GVariant> value;
    g_variant_get(answer.get(), "(v)", static_cast<GVariant**>(GLibOutput{value}));
    return g_variant_get_boolean(value.get()) != FALSE;
}

bool SecretServiceConnection::unlock(SecretCollection* collection) {
    GList objects{collection, nullptr, nullptr};
    GLibOwner<GError> error;
    const int unlocked =
        secret_service_unlock_sync(service_.get(), &objects, token_->cancellable(), nullptr, GLibOutput{error});
    if (unlocked < 0 || error) {
        throw SecretServiceError::from(error.get(), "unlocking");
    }
    return unlocked > 0 && !isLocked(collection);
}

}  // namespace Tarnwick_API::Platform
