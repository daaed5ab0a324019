#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Backends/ApiVersion2.hpp>

#include <Facade/FacadeUse.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <stdexcept>
#include <utility>

namespace Tarnwick_API {

std::shared_ptr<TarnwickApi> TarnwickApi::create(ApiVersion apiVersion, std::string consumerKey,
                                                 std::string consumerSecret, std::int64_t partnersId,
                                                 const Platform::Uuid& uuid, std::string keychainService,
                                                 const FilterIds& filterIds, ApiUrl apiUrl) {
    return std::make_shared<TarnwickApi>(Key{}, apiVersion, std::move(consumerKey), std::move(consumerSecret),
                                         partnersId, uuid, std::move(keychainService), filterIds, std::move(apiUrl));
}

std::shared_ptr<TarnwickApi> TarnwickApi::create(TarnwickApiSettings settings) {
    if (Platform::DebugChannel::isOpen()) {
        for (const auto& fault : settings.faults()) {
            Platform::DebugChannel::write("Settings: " + fault, "create");
        }
    }
    auto api = create(settings.apiVersion, std::move(settings.consumerKey), std::move(settings.consumerSecret),
                      settings.partnersId, settings.uuid, std::move(settings.keychainService),
                      FilterIds{settings.filterIds}, ApiUrl{std::move(settings.apiUrl)});
    api->setEnvironment(settings.environment);
    api->setUseFallbackIp(settings.useFallbackIp);
    api->setRetrySpread(std::move(settings.retrySpread));
    return api;
}

TarnwickApi::TarnwickApi(Key /*unused*/, ApiVersion apiVersion, std::string consumerKey, std::string consumerSecret,
                         std::int64_t partnersId, const Platform::Uuid& uuid, std::string keychainService,
                         const FilterIds& filterIds, ApiUrl apiUrl)
    : keychainTokenSerivce_{std::move(keychainService)},
      consumerKey_{std::move(consumerKey)},
      consumerSecret_{std::move(consumerSecret)},
      partnersId_{partnersId},
      apiUrl_{std::move(apiUrl)},
      filters_{filterIds},
      uid_{uuid},
      version_{apiVersion},
      api_{apiFactory(version_, consumerKey_, consumerSecret_, partnersId_, uid_, apiUrl_)} {
    api_->setAttemptObservers(attemptObservers_);
}

std::optional<User> TarnwickApi::currentUser() const {
    const Use use{*this, "currentUser"};
    return internalCurrentUser_;
}

std::optional<Status> TarnwickApi::currentStatus() const {
    const Use use{*this, "currentStatus"};
    return internalCurrentStatus_;
}

std::string TarnwickApi::username() const {
    const Use use{*this, "username"};
    return api_->username().value_or(std::string{});
}

void TarnwickApi::setEnvironment(ApiEnvironment environment) {
    const Use use{*this, "setEnvironment"};
    environment_ = environment;
    api_->setEnvironment(environment);
}

void TarnwickApi::setUseFallbackIp(bool useFallbackIp) {
    const Use use{*this, "setUseFallbackIp"};
    useFallbackIp_ = useFallbackIp;
    api_->setUseFallbackIp(useFallbackIp);
}

void TarnwickApi::setRetrySpread(RetrySpread spread) {
    const Use use{*this, "setRetrySpread"};
    retrySpread_ = std::move(spread);
    api_->setRetrySpread(retrySpread_);
}

void TarnwickApi::setApi(std::shared_ptr<ApiCommunicateable> api) {
    const Use use{*this, "setApi"};
    if (!api) {
        throw std::invalid_argument{"TarnwickApi::setApi: no backend"};
    }
    api_ = std::move(api);
    api_->setAttemptObservers(attemptObservers_);
}

void TarnwickApi::setVersion(ApiVersion version) {
    const Use use{*this, "setVersion"};
    version_ = version;
    setApi(apiFactory(version_, consumerKey_, consumerSecret_, partnersId_, uid_, apiUrl_));
    api_->setUseFallbackIp(useFallbackIp_);
    api_->setRetrySpread(retrySpread_);
}

AttemptObservers::Observation TarnwickApi::observeAttempts(AttemptObservers::Handler handler) {
    return attemptObservers_->add(std::move(handler));
}

std::shared_ptr<ApiCommunicateable> TarnwickApi::apiFactory(ApiVersion version, std::optional<std::string> consumerKey,
                                                            std::optional<std::string> consumerSecret,
                                                            std::int64_t partnersId, const Platform::Uuid& uuid,
                                                            const ApiUrl& apiUrl) const {
    if (version == ApiVersion::v2) {
        return std::make_shared<ApiVersion2>(std::move(consumerKey), std::move(consumerSecret), uuid);
    }
    return ApiVersion1::create(std::move(consumerKey), std::move(consumerSecret), partnersId, uuid,
                               keychainTokenSerivce_, environment_, apiUrl);
}

void TarnwickApi::createUser(const std::string& username, const std::string& password, Completion<void> onCompletion) {
    const Use use{*this, "createUser"};
    api_->createUser(username, password, std::move(onCompletion));
}

void TarnwickApi::getServer(std::int64_t id, Completion<Server> onCompletion) {
    const Use use{*this, "getServer"};
    api_->getServer(id, std::move(onCompletion));
}

void TarnwickApi::updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion) {
    const Use use{*this, "updateUser"};
    api_->updateUser(field, newValue, std::move(onCompletion));
}

void TarnwickApi::getAuthToken(Completion<std::string> onCompletion) {
    const Use use{*this, "getAuthToken"};
    api_->getAuthToken(std::move(onCompletion));
}

void TarnwickApi::getDevices(Completion<std::vector<Device>> onCompletion) {
    const Use use{*this, "getDevices"};
    api_->getDevices(std::move(onCompletion));
}

}  // namespace Tarnwick_API
