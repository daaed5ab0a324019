#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Facade/TarnwickApiSettings.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Application/Uuid.hpp>
#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Testing/FakeBackend.hpp>
#include <Tarnwick_API/Testing/ScriptedHttpSession.hpp>

#include <memory>

namespace Tarnwick_API::Testing {

/// What a test of an application needs, ready: a facade on a fake backend, in a process without a network, a keychain
/// of the user's or a clock. A local variable, a member, or a base of the test framework's own fixture.
///
///     ApiFixture fixture;
///     fixture.backend->currentUser.answer(ada);
///     SignIn signIn{fixture.api};
///     signIn.submit("ada", "secret");
///     fixture.queue->runAll();
///
/// As long as it lives, every process-wide value is either its own or the library's default; what was there before
/// comes back with its end, and what is held or queued then is never answered.
/// Thread: one for all, the main one.
class ApiFixture {
    // Before all that it gives back.
    Platform::ScopedProcessValues processValues_{Platform::ScopedProcessValues::Start::defaults};

public:
    explicit ApiFixture(TarnwickApiSettings settings = defaultSettings());
    ~ApiFixture();
    ApiFixture(const ApiFixture&) = delete;
    ApiFixture& operator=(const ApiFixture&) = delete;

    /// What a facade needs to be told, of no meaning; no ids of filters.
    [[nodiscard]] static TarnwickApiSettings defaultSettings();

    /// The main queue. Nothing arrives before it runs.
    const std::shared_ptr<Platform::VirtualTimeMainQueue> queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    /// Where the library keeps the access token.
    const std::shared_ptr<Platform::KeychainStore> keychain = Platform::makeMemoryKeychainStore();
    /// What the library's own backend sends its requests with, for tests that go down to HTTP: say
    /// `api->setVersion(ApiVersion::v1)` first.
    const std::shared_ptr<ScriptedHttpSession> session = std::make_shared<ScriptedHttpSession>();
    const std::shared_ptr<FakeBackend> backend = FakeBackend::create();
    /// The facade to give to the application, with `backend`.
    const std::shared_ptr<TarnwickApi> api;
};

}  // namespace Tarnwick_API::Testing
