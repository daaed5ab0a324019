#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <Platform/Text/Wiping.hpp>

#include <utility>

namespace Tarnwick_API {

namespace {

/// A text that may be a password, kept until an operation begins, and left nowhere.
class KeptSecret {
public:
    explicit KeptSecret(std::string text) : text_{std::move(text)} {}
    KeptSecret(KeptSecret&&) noexcept = default;
    KeptSecret& operator=(KeptSecret&&) = delete;
    KeptSecret(const KeptSecret&) = delete;
    KeptSecret& operator=(const KeptSecret&) = delete;
    ~KeptSecret() { Platform::wipe(text_); }

    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    std::string text_;
};

}  // namespace

Operation<void> TarnwickApi::createUser(std::string username, std::string password) {
    return Operation<void>{[self = shared_from_this(), username = std::move(username),
                            password = KeptSecret{std::move(password)}](Completion<void> onCompletion) {
        self->createUser(username, password.text(), std::move(onCompletion));
    }};
}

Operation<User> TarnwickApi::login(std::string username, std::string password, bool qvImport) {
    return Operation<User>{[self = shared_from_this(), username = std::move(username),
                            password = KeptSecret{std::move(password)}, qvImport](Completion<User> onCompletion) {
        self->login(username, password.text(), qvImport, std::move(onCompletion));
    }};
}

Operation<User> TarnwickApi::restoreSession() {
    return Operation<User>{
        [self = shared_from_this()](Completion<User> onCompletion) { self->restoreSession(std::move(onCompletion)); }};
}

Operation<void> TarnwickApi::logout() {
    return Operation<void>{
        [self = shared_from_this()](Completion<void> onCompletion) { self->logout(std::move(onCompletion)); }};
}

Operation<User> TarnwickApi::getCurrentUser() {
    return Operation<User>{
        [self = shared_from_this()](Completion<User> onCompletion) { self->getCurrentUser(std::move(onCompletion)); }};
}

Operation<std::vector<Country>> TarnwickApi::getCountries(ServerProfile profile, std::optional<double> latitude,
                                                          std::optional<double> longitude) {
    using Countries = std::vector<Country>;
    return Operation<Countries>{
        [self = shared_from_this(), profile, latitude, longitude](Completion<Countries> onCompletion) {
            self->getCountries(profile, latitude, longitude, std::move(onCompletion));
        }};
}

Operation<std::vector<Server>> TarnwickApi::getServers(std::string countryCode, std::optional<double> latitude,
                                                       std::optional<double> longitude) {
    using Servers = std::vector<Server>;
    return Operation<Servers>{[self = shared_from_this(), countryCode = std::move(countryCode), latitude,
                               longitude](Completion<Servers> onCompletion) {
        self->getServers(countryCode, latitude, longitude, std::move(onCompletion));
    }};
}

Operation<std::vector<Server>> TarnwickApi::getCandidateServers(std::optional<std::string> countryCode,
                                                                ServerProfile profile,
                                                                std::optional<std::int64_t> serviceId) {
    using Servers = std::vector<Server>;
    return Operation<Servers>{[self = shared_from_this(), countryCode = std::move(countryCode), profile,
                               serviceId](Completion<Servers> onCompletion) {
        self->getCandidateServers(countryCode, profile, serviceId, std::move(onCompletion));
    }};
}

Operation<Server> TarnwickApi::getServer(std::int64_t id) {
    return Operation<Server>{[self = shared_from_this(), id](Completion<Server> onCompletion) {
        self->getServer(id, std::move(onCompletion));
    }};
}

Operation<void> TarnwickApi::updateUser(UserField field, std::string newValue) {
    return Operation<void>{
        [self = shared_from_this(), field, newValue = KeptSecret{std::move(newValue)}](Completion<void> onCompletion) {
            self->updateUser(field, newValue.text(), std::move(onCompletion));
        }};
}

Operation<User> TarnwickApi::setToken(std::string token, std::string secret) {
    return Operation<User>{[self = shared_from_this(), token = std::move(token),
                            secret = KeptSecret{std::move(secret)}](Completion<User> onCompletion) {
        self->setToken(token, secret.text(), std::move(onCompletion));
    }};
}

Operation<Status> TarnwickApi::getStatus() {
    return Operation<Status>{
        [self = shared_from_this()](Completion<Status> onCompletion) { self->getStatus(std::move(onCompletion)); }};
}

Operation<std::string> TarnwickApi::getAuthToken() {
    return Operation<std::string>{[self = shared_from_this()](Completion<std::string> onCompletion) {
        self->getAuthToken(std::move(onCompletion));
    }};
}

Operation<std::vector<Device>> TarnwickApi::getDevices() {
    using Devices = std::vector<Device>;
    return Operation<Devices>{
        [self = shared_from_this()](Completion<Devices> onCompletion) { self->getDevices(std::move(onCompletion)); }};
}

Operation<std::vector<FavoriteEntry>> TarnwickApi::getDefaultFavorites() {
    using Favorites = std::vector<FavoriteEntry>;
    return Operation<Favorites>{[self = shared_from_this()](Completion<Favorites> onCompletion) {
        self->getDefaultFavorites(std::move(onCompletion));
    }};
}

}  // namespace Tarnwick_API
