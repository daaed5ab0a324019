#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Logging/DebugChannel.hpp>

#include <algorithm>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/spdlog.h>

namespace Tarnwick_API::Platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LoggingTest : public testing::Test {
protected:
    void recordMessages() {
        Logging::setSink([this](const Logging::Entry& entry) { messages_.emplace_back(entry.message); });
    }

    std::vector<std::string> messages_;

private:
    ScopedProcessValues scope_;
};

void write(std::string_view message) {
    DebugChannel::write(message, "function");
}

TEST_F(LoggingTest, IsSilentUnlessTheHostSwitchesItOn) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(DebugChannel::isOpen());
    EXPECT_EQ(Logging::logger(), nullptr);
    write("lost");
    recordMessages();
    EXPECT_TRUE(DebugChannel::isOpen());
    write("kept");
    Logging::setSink(nullptr);
    EXPECT_FALSE(DebugChannel::isOpen());
    write("lost again");
    Logging::setLogger(nullptr);
    EXPECT_THAT(messages_, ElementsAre("kept"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LoggingTest, TellsWhereAnEntryComesFrom) {
    std::string place;
    Logging::setSink([&](const Logging::Entry& entry) {
        place = std::string{entry.function} + ' ' + entry.file + ' ' + std::to_string(entry.line);
    });
    [] { DebugChannel::write("text", "sendRequest(url:)"); }();
    EXPECT_EQ(place, "sendRequest(url:) " __FILE__ " " + std::to_string(__LINE__ - 1));
}

TEST_F(LoggingTest, PassesTextAsItStands) {
    recordMessages();
    const std::vector<std::string> texts{
        R"({"a":{},"b":"{0}{:d}%s%n"})", "curl -v \\\n\t-X GET\n", "", std::string("a\0b", 3), "\xFF\u00E9",
        std::string(100'000, 'x')};
    std::ranges::for_each(texts, write);
    EXPECT_EQ(messages_, texts);
}

TEST_F(LoggingTest, GivesItsLoggerOutUnregisteredAndTranslatesSeverities) {
    std::vector<Logging::Severity> severities;
    Logging::setSink([&](const Logging::Entry& entry) {
        severities.push_back(entry.severity);
        EXPECT_STREQ(entry.function, "");
        EXPECT_STREQ(entry.file, "");
    });
    const auto logger = Logging::logger();
    EXPECT_EQ(logger->name(), "Tarnwick_API");
    EXPECT_EQ(spdlog::get("Tarnwick_API"), nullptr);
    for (int level = spdlog::level::trace; level < spdlog::level::off; ++level) {
        logger->log(static_cast<spdlog::level::level_enum>(level), "text");
    }
    using enum Logging::Severity;
    EXPECT_THAT(severities, ElementsAre(debug, info, warning, error, error));
}

TEST_F(LoggingTest, UsesTheHostsLoggerAtItsOwnLevel) {
    std::ostringstream text;
    const auto logger =
        std::make_shared<spdlog::logger>("host", std::make_shared<spdlog::sinks::ostream_sink_mt>(text));
    logger->set_pattern("%n %l %! %v");
    Logging::setLogger(logger);
    EXPECT_EQ(Logging::logger(), logger);
    EXPECT_FALSE(DebugChannel::isOpen());
    write("below {}");
    EXPECT_EQ(text.str(), "");

    logger->set_level(spdlog::level::debug);
    EXPECT_TRUE(DebugChannel::isOpen());
    write("above {}");
    EXPECT_EQ(text.str(), "host debug function above {}\n");

    logger->set_level(spdlog::level::info);
    logger->enable_backtrace(1);
    EXPECT_TRUE(DebugChannel::isOpen()) << "the host keeps lower entries for later";
}

TEST_F(LoggingTest, FailuresOfASinkAreReportedAndStayThere) {
    int calls = 0;
    Logging::setSink([&](const Logging::Entry&) {
        if (++calls == 1) {
            throw std::runtime_error{"disk full"};
        }
        throw calls;
    });
    testing::internal::CaptureStderr();
    write("text");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("disk full"));
    write("text");
    EXPECT_EQ(calls, 2);

    std::string reported;
    Logging::logger()->set_error_handler([&](const std::string& text) {
        reported = text;
        throw std::runtime_error{"from the error handler"};
    });
    write("text");
    EXPECT_THAT(reported, HasSubstr("no standard exception"));
}

TEST_F(LoggingTest, ASinkThatMakesTheLibraryLogIsNotCalledForThat) {
    Logging::setSink([this, owned = std::string(100, 'x')](const Logging::Entry& entry) {
        EXPECT_FALSE(DebugChannel::isOpen());
        write("from inside");
        Logging::setSink(nullptr);
        messages_.push_back(std::string{entry.message} + owned.back());
    });
    write("text");
    EXPECT_THAT(messages_, ElementsAre("textx"));
    recordMessages();
    write("next");
    EXPECT_THAT(messages_, ElementsAre("textx", "next"));
}

TEST_F(LoggingTest, ASinkMayWaitForAThreadThatLogs) {
    Logging::setSink([this](const Logging::Entry& entry) {
        messages_.emplace_back(entry.message);
        if (messages_.size() == 1) {
            std::jthread{[] { write("of the other"); }}.join();
        }
    });
    write("text");
    EXPECT_THAT(messages_, ElementsAre("text", "of the other"));
}

TEST_F(LoggingTest, CallsASinkOnceAtATimeWhileItMayBeReplaced) {
    int callsWithoutLock = 0;
    Logging::setSink([&callsWithoutLock](const Logging::Entry&) { ++callsWithoutLock; });
    const auto first = Logging::logger();
    std::vector<std::jthread> threads;
    const auto startThree = [&] {
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([] {
                for (int count = 0; count < 300; ++count) {
                    if (DebugChannel::isOpen()) {
                        write("text");
                    }
                }
            });
        }
    };
    startThree();
    threads.clear();
    EXPECT_EQ(callsWithoutLock, 900);
    startThree();
    for (int count = 0; count < 300; ++count) {
        Logging::setLogger(count % 2 == 0 ? nullptr : first);
    }
    threads.clear();
    EXPECT_TRUE(DebugChannel::isOpen());
}

}  // namespace
}  // namespace Tarnwick_API::Platform
