#pragma once

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include "Received.hpp"
#include "Service.hpp"
#include "TemporaryFolder.hpp"

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace Tarnwick_API::Testing {

/// The real client against a running stand-in service over TLS. The pauses between attempts pass on a virtual clock.
class ServiceFixture : public ::testing::Test {
protected:
    ServiceFixture();

    /// As the library's own configuration, but trusting the service's authority, and the fallback address led to it.
    [[nodiscard]] Platform::HttpSessionConfiguration sessionConfiguration() const;
    static void use(Platform::HttpSessionConfiguration configuration);

    /// Runs the main queue until `done`, the clock jumping over pauses.
    void runUntil(const std::function<bool()>& done);

    /// Starts an operation with a completion, and runs the main queue until that was called.
    template <typename T>
    Received<T> await(const std::function<void(Completion<T>)>& operation) {
        // Owned by the completion too: one that is called once too often must not meet a dead object.
        const auto received = std::make_shared<Received<T>>();
        operation([received](auto... outcome) { received->take(std::move(outcome)...); });
        runUntil([&] { return received->times > 0; });
        EXPECT_EQ(received->times, 1);
        return *received;
    }

    [[nodiscard]] std::shared_ptr<TarnwickApi> makeFacade() const;
    Received<User> signIn(const std::string& username, const std::string& password);
    void createAccount(const std::string& username, const std::string& password);
    Received<Status> getStatus();

    TarnwickService::Service service;
    std::shared_ptr<Platform::VirtualTimeMainQueue> queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    TemporaryFolder folder;
    std::filesystem::path trustedRoots = folder.path() / "roots.pem";
    Platform::ScopedProcessValues scope;
    std::shared_ptr<TarnwickApi> api;
};

}  // namespace Tarnwick_API::Testing
