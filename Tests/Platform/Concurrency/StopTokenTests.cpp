#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>

namespace Tarnwick_API::Platform {
namespace {

TEST(StopToken, KeepsNothingOfRegistrationsThatHaveEnded) {
    const StopSource ofTheApplication;
    const auto before = ::mallinfo2().uordblks;
    for (int request = 0; request < 10'000; ++request) {
        const auto ended = ofTheApplication.token().onStop([](StopReason /*reason*/) {});
    }
    EXPECT_LT(::mallinfo2().uordblks, before + 10'000);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
#endif
