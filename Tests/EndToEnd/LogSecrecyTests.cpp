#include "ServiceFixture.hpp"

#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using LogSecrecy = Testing::ServiceFixture;

TEST_F(LogSecrecy, NoPasswordOfAWholeSessionIsInTheLog) {
    std::string log;
    const Platform::ScopedProcessValues logging;
    Platform::Logging::setSink([&](const Platform::Logging::Entry& entry) { log.append(entry.message).append("\n"); });
    const std::string passwords[] = {"first-hush", "second/hush", "third\"hush\",\"x"};
    EXPECT_FALSE(await<void>([&](auto done) { api->createUser("bob", passwords[0], std::move(done)); }).error);
    service.faults().add({.count = 2, .cut = TarnwickService::Cut::beforeAnswer});
    EXPECT_TRUE(signIn("bob", passwords[0]).result);
    EXPECT_FALSE(
        await<void>([&](auto done) { api->updateUser(UserField::password, passwords[1], std::move(done)); }).error);
    EXPECT_FALSE(
        await<void>([&](auto done) { api->updateUser(UserField::password, passwords[2], std::move(done)); }).error);
    EXPECT_TRUE(signIn("bob", "wrong-hush").error);
    EXPECT_FALSE(await<void>([&](auto done) { api->logout(std::move(done)); }).error);

    EXPECT_NE(log.find("OBFUSCATED"), std::string::npos);
    EXPECT_NE(log.find("users/me"), std::string::npos);
    EXPECT_EQ(log.find("hush"), std::string::npos)
        << log.substr(log.find("hush") < 200 ? 0 : log.find("hush") - 200, 400);
}

}  // namespace
}  // namespace Tarnwick_API
