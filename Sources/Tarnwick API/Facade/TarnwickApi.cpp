#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Backends/ApiVersion2.hpp>

#include <utility>

namespace Tarnwick_API {

std::shared_ptr<TarnwickApi> TarnwickApi::create(ApiVersion apiVersion, std::string consumerKey,
                                                 std::string consumerSecret, std::int64_t partnersId,
                                                 const Platform::Uuid& uuid, std::string keychainService,
                                                 const FilterIds& filterIds, ApiUrl apiUrl) {
    return std::make_shared<TarnwickApi>(Key{}, apiVersion, std::move(consumerKey), std::move(consumerSecret),
                                         partnersId, uuid, std::move(keychainService), filterIds, std::move(apiUrl));
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

std::string TarnwickApi::username() const {
    return api_->username().value_or(std::string{});
}

void TarnwickApi::setEnvironment(ApiEnvironment environment) {
    environment_ = environment;
    api_->setEnvironment(environment);
}

void TarnwickApi::setUseFallbackIp(bool useFallbackIp) {
    useFallbackIp_ = useFallbackIp;
    api_->setUseFallbackIp(useFallbackIp);
}

void TarnwickApi::setApi(std::shared_ptr<ApiCommunicateable> api) {
    api_ = std::move(api);
    api_->setAttemptObservers(attemptObservers_);
}

void TarnwickApi::setVersion(ApiVersion version) {
    version_ = version;
    setApi(apiFactory(version_, consumerKey_, consumerSecret_, partnersId_, uid_, apiUrl_));
    api_->setUseFallbackIp(useFallbackIp_);
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
    api_->createUser(username, password, std::move(onCompletion));
}

void TarnwickApi::getServer(std::int64_t id, Completion<Server> onCompletion) {
    api_->getServer(id, std::move(onCompletion));
}

void TarnwickApi::updateUser(UserField field, const std::string& newValue, Completion<void> onCompletion) {
    api_->updateUser(field, newValue, std::move(onCompletion));
}

void TarnwickApi::getAuthToken(Completion<std::string> onCompletion) {
    api_->getAuthToken(std::move(onCompletion));
}

void TarnwickApi::getDevices(Completion<std::vector<Device>> onCompletion) {
    api_->getDevices(std::move(onCompletion));
}

}  // namespace Tarnwick_API
