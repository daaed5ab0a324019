#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include <cstdlib>
#include <memory>

#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

struct Program {
    const char* name;
    void (*act)();
    bool isTold;
};

void PrintTo(const Program& program, std::ostream* stream) {
    *stream << program.name;
}

class UnrunMainQueueTest : public testing::TestWithParam<Program> {};

TEST_P(UnrunMainQueueTest, IsToldToAProgramThatWaitedForNothing) {
    // A process of its own, in which nothing was done before.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto told = testing::HasSubstr("BuiltInMainQueue::shared()->run()");
    const auto matcher = GetParam().isTold ? testing::Matcher<const std::string&>{told} : testing::IsEmpty();
    EXPECT_EXIT(
        {
            GetParam().act();
            std::exit(EXIT_SUCCESS);
        },
        testing::ExitedWithCode(EXIT_SUCCESS), matcher);
}

INSTANTIATE_TEST_SUITE_P(Programs, UnrunMainQueueTest,
                         testing::Values(Program{"uses nothing", [] {}, false},
                                         Program{"never runs the queue", [] { MainQueue::main()->soon([] {}); }, true},
                                         Program{"runs it",
                                                 [] {
                                                     MainQueue::main()->soon(
                                                         [] { BuiltInMainQueue::shared()->stop(); });
                                                     BuiltInMainQueue::shared()->run();
                                                 },
                                                 false},
                                         Program{"has a queue of its own",
                                                 [] {
                                                     MainQueue::setMain(std::make_shared<BuiltInMainQueue>());
                                                     MainQueue::main()->soon([] {});
                                                 },
                                                 false},
                                         Program{"leaves it to the parent",
                                                 [] {
                                                     MainQueue::main()->soon(
                                                         [] { BuiltInMainQueue::shared()->stop(); });
                                                     if (::fork() == 0) {
                                                         std::exit(EXIT_SUCCESS);
                                                     }
                                                     ::wait(nullptr);
                                                     BuiltInMainQueue::shared()->run();
                                                 },
                                                 false}));

}  // namespace
}  // namespace Tarnwick_API::Platform
