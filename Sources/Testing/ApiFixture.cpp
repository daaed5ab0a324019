#include <Tarnwick_API/Testing/ApiFixture.hpp>

#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include <utility>

namespace Tarnwick_API::Testing {

ApiFixture::ApiFixture(TarnwickApiSettings settings) : api{TarnwickApi::create(std::move(settings))} {
    Platform::MainQueue::setMain(queue);
    Keychain::setStore(keychain);
    ApiVersion1::setSessionManager(session);
    api->setApi(backend);
}

ApiFixture::~ApiFixture() {
    backend->dropHeld();
}

TarnwickApiSettings ApiFixture::defaultSettings() {
    return {.consumerKey = "test",
            .consumerSecret = "test",
            .partnersId = 1,
            .uuid = *Platform::Uuid::fromString("00000000-0000-4000-8000-000000000000"),
            .keychainService = "test",
            .apiUrl = {.live = "api.example.test"}};
}

}  // namespace Tarnwick_API::Testing
