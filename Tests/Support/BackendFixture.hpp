#pragma once

#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/HostName.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>
#include <Tarnwick_API/Testing/ScriptedHttpSession.hpp>

#include "Received.hpp"

#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API::Testing {

inline const Platform::Uuid installation = *Platform::Uuid::fromString("1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
inline const ApiUrl hosts{"live.example.test", "beta.example.test", "dev.example.test", "staging.example.test"};

/// A version-1 backend in a process with known settings, on virtual time and without a network.
class BackendFixture : public ::testing::Test {
protected:
    BackendFixture() {
        Platform::MainQueue::setMain(queue);
        Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleVersion", std::string{"7100"}}}});
        Platform::Locale::setIdentifierLookup([] { return std::string{"en_GB"}; });
        Platform::HostName::setLookup([] { return std::optional<std::string>{"desk-1"}; });
        Keychain::setStore(keychain);
        ApiVersion1::setSessionManager(session);
    }

    /// What a request asks for, without the service's base URL and the default parameters.
    static std::string askedBy(const Platform::HttpRequest& request) {
        auto text = request.url().absoluteString().substr(std::string{"https://live.example.test/vb/"}.size());
        text.resize(text.find("language=en&os=mac&partnersId=7&region=GB&version=7100"));
        return text;
    }

    Platform::ScopedProcessValues scope{Platform::ScopedProcessValues::Start::defaults};
    std::shared_ptr<Platform::VirtualTimeMainQueue> queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    std::shared_ptr<ScriptedHttpSession> session = std::make_shared<ScriptedHttpSession>();
    std::shared_ptr<Platform::KeychainStore> keychain = Platform::makeMemoryKeychainStore();
    std::shared_ptr<ApiVersion1> backend =
        ApiVersion1::create("ck", "cs", 7, installation, "tests", ApiEnvironment::live, hosts);
};

}  // namespace Tarnwick_API::Testing
