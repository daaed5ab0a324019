#pragma once

#include <Platform/Keychain/SecretService/CallToken.hpp>
#include <Platform/Keychain/SecretService/GLibOwners.hpp>
#include <Platform/Keychain/SecretService/SecretServiceError.hpp>

#include <memory>
#include <string>
#include <utility>

#include <libsecret/secret.h>

namespace Tarnwick_API::Platform {

/// The way to the Secret Service: a connection to the session bus of our own, as the one that a process shares ends
/// the process when the bus goes. It is made when it is needed, and anew when the bus or the Secret Service was.
/// Thread: the one that made it, whose thread-default main context nobody else runs.
class SecretServiceConnection {
public:
    enum class Prompts { never, shown };

    explicit SecretServiceConnection(Prompts prompts) : prompts_{prompts} {}

    void beginCall(std::shared_ptr<const CallToken> token) noexcept { token_ = std::move(token); }
    /// That of the call under way.
    [[nodiscard]] const CallToken& token() const noexcept { return *token_; }

    /// The default collection, with its properties as they are now. Throws when there is none.
    [[nodiscard]] GLibOwner<SecretCollection> defaultCollection();
    [[nodiscard]] bool isLocked(SecretCollection* collection);
    /// Asks the user, for as long as the user takes. False when the collection is still locked afterwards.
    [[nodiscard]] bool unlock(SecretCollection* collection);

    /// The next call begins with a new connection.
    void drop();

private:
    void connect();
    /// The unique name of the Secret Service on the bus; it is started if need be.
    [[nodiscard]] std::string owner();
    [[nodiscard]] SecretService* service();
    /// Null with `error` set when it fails.
    [[nodiscard]] GLibOwner<GVariant> call(const char* destination, const char* path, const char* interface,
                                           const char* method, GVariant* arguments, GLibOwner<GError>& error);

    Prompts prompts_;
    std::shared_ptr<const CallToken> token_ = std::make_shared<const CallToken>();
    GLibOwner<GDBusConnection> bus_;
    GLibOwner<SecretService> service_;
    std::string serviceOwner_;
};

}  // namespace Tarnwick_API::Platform
